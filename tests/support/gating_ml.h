// Gating-ML documents: the elements that tests put together, and a strategy that has every kind of them.
#pragma once

#include <string>

namespace Orvane::Testing {

/// A document with these elements. The first of them stands on its third line.
inline std::string Document(const std::string& elements) {
    return "<?xml version='1.0'?>\n<Gating-ML xmlns='http://www.isac-net.org/std/Gating-ML/v2.0/gating'>\n" +
           elements + "\n</Gating-ML>\n";
}

inline std::string On(const std::string& parameter, const std::string& attributes,
                      const std::string& compensation = "uncompensated") {
    return "<dimension compensation-ref='" + compensation + "' " + attributes + "><fcs-dimension name='" +
           parameter + "'/></dimension>";
}

inline std::string Rectangle(const std::string& id, const std::string& dimensions,
                             const std::string& parent = "") {
    const std::string within = parent.empty() ? "" : " parent_id='" + parent + "'";
    return "<RectangleGate id='" + id + "'" + within + ">" + dimensions + "</RectangleGate>";
}

/// Every kind of gate, dimension and transformation, over Par1, Par2 and Par3.
inline const std::string EveryKind =
    R"(<transformation id='t' boundMax='0.6'><flin T='4' A='0'/></transformation>
<transformation id='u'><flin T='3' A='1'/></transformation><transformation id='r'>
<fratio A='2' B='-1' C='0'><fcs-dimension name='Par1'/><fcs-dimension name='Par2'/></fratio></transformation>
<transformation id='v'><flog T='2' M='1'/></transformation>
<transformation id='w'><fasinh T='2' M='1' A='0'/></transformation>
<spectrumMatrix id='m'><fluorochromes><fcs-dimension name='A'/></fluorochromes>
<detectors><fcs-dimension name='Par1'/></detectors>
<spectrum><coefficient value='1'/></spectrum></spectrumMatrix>
<PolygonGate id='p' parent_id='y'><dimension compensation-ref='FCS'><fcs-dimension name='Par1'/></dimension>
<dimension compensation-ref='FCS'><fcs-dimension name='Par3'/></dimension>
<vertex><coordinate value='0'/><coordinate value='0'/></vertex>
<vertex><coordinate value='3'/><coordinate value='0.5'/></vertex>
<vertex><coordinate value='0'/><coordinate value='3.5'/></vertex></PolygonGate>
<BooleanGate id='both'><and><gateReference ref='x'/>
<gateReference ref='p'/></and></BooleanGate>
<BooleanGate id='either'><or><gateReference ref='x' use-as-complement='1'/><gateReference ref='y'/></or>
</BooleanGate><BooleanGate id='not' parent_id='y'><not><gateReference ref='both'/></not></BooleanGate>
<BooleanGate id='rest'><and><gateReference ref='not' use-as-complement='true'/><gateReference ref='either'/>
</and></BooleanGate><QuadrantGate id='q' parent_id='x'><divider id='a' compensation-ref='FCS'>
<fcs-dimension name='Par2'/><value>1.5</value></divider><divider id='b' compensation-ref='FCS'>
<fcs-dimension name='Par3'/><value>2</value><value> 1 </value></divider><Quadrant id='low'>
<position divider_ref='a' location='0'/><position divider_ref='b' location='1.5'/></Quadrant>
<Quadrant id='high'><position divider_ref='b' location='2'/></Quadrant>
<Quadrant id='none'><position divider_ref='b' location='0.5'/></Quadrant></QuadrantGate>
<RectangleGate id='ratio'><dimension compensation-ref='FCS' max='3'><new-dimension transformation-ref='r'/>
</dimension></RectangleGate><RectangleGate id='dye'>
<dimension compensation-ref='m' min='1.5'><fcs-dimension name='A'/></dimension></RectangleGate>)" +
    Rectangle("linear", On("Par1", "min='0.75' transformation-ref='u'")) +
    Rectangle("log", On("Par1", "max='0.7' transformation-ref='v'")) +
    Rectangle("arsinh", On("Par1", "min='0.99' transformation-ref='w'")) +
    Rectangle("clipped", On("Par1", "max='0.5' transformation-ref='t'") +
                             On("Par2", "max='1' min='0.5' transformation-ref='t'")) +
    Rectangle("box", On("Par1", "min='1' max='2'") + On("Par2", "min='2'") + On("Par3", "min='2'")) +
    Rectangle("x", On("Par1", "min='2'")) + Rectangle("y", On("Par2", "min='2'"));

}  // namespace Orvane::Testing
