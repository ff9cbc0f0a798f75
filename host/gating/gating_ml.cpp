#include "gating/gating_ml.h"

#include <algorithm>
#include <set>
#include <utility>

#include "files/xml_document.h"
#include "gating/gating_ml_transformations.h"
#include "text/numbers.h"

namespace Host {
namespace {

constexpr const char* GatingNamespace = "http://www.isac-net.org/std/Gating-ML/v2.0/gating";

/// One of the axes that a quadrant gate is cut along.
struct Divider {
    Dimension dimension;
    std::vector<double> values;  ///< ascending
};

/// `children` are the elements of `element` that may describe what it looks at.
Dimension ReadDimension(const XmlElement& element, const std::vector<XmlElement>& children) {
    Dimension dimension;
    dimension.place = element.Place();
    dimension.compensation = element.Require("compensation-ref", "uncompensated, FCS or a matrix");
    dimension.transformation = element.Attribute("transformation-ref").value_or("");
    std::size_t axes = 0;
    for (const XmlElement& child : children) {
        if (child.Name() == "fcs-dimension") {
            dimension.parameter = ReadParameterName(child);
        } else if (child.Name() == "new-dimension") {
            dimension.ratio = child.Require("transformation-ref", "the id of a ratio");
        } else {
            continue;
        }
        ++axes;
    }
    if (axes != 1) element.RefuseCount("fcs-dimension or new-dimension", axes, "one");
    return dimension;
}

Dimension ReadDimension(const XmlElement& element) {
    return ReadDimension(element, element.Children({"fcs-dimension", "new-dimension"}));
}

RectangleGate ReadRectangle(const XmlElement& element) {
    const std::vector<XmlElement> dimensions = element.Children({"dimension"});
    if (dimensions.empty()) element.RefuseCount("dimension", 0, "at least one");
    RectangleGate gate;
    for (const XmlElement& dimension : dimensions) {
        const Range range{ReadDimension(dimension), dimension.Number("min"), dimension.Number("max")};
        if (!range.min && !range.max) dimension.Refuse("min", std::nullopt, "a min, a max or both");
        gate.ranges.push_back(range);
    }
    return gate;
}

Vertex ReadVertex(const XmlElement& element) {
    const std::vector<XmlElement> coordinates = element.Children({"coordinate"});
    if (coordinates.size() != 2) element.RefuseCount("coordinate", coordinates.size(), "two");
    return {static_cast<float>(coordinates[0].RequireNumber("value")),
            static_cast<float>(coordinates[1].RequireNumber("value"))};
}

PolygonGate ReadPolygon(const XmlElement& element) {
    element.Children({"dimension", "vertex"});
    const std::vector<XmlElement> dimensions = element.Named("dimension");
    if (dimensions.size() != 2) element.RefuseCount("dimension", dimensions.size(), "two");
    PolygonGate gate{ReadDimension(dimensions[0]), ReadDimension(dimensions[1]), {}};
    for (const XmlElement& vertex : element.Named("vertex"))
        gate.vertices.push_back(ReadVertex(vertex));
    if (gate.vertices.size() < 3) element.RefuseCount("vertex", gate.vertices.size(), "at least three");
    return gate;
}

BooleanGate ReadBoolean(const XmlElement& element) {
    const std::vector<XmlElement> operations = element.Children({"and", "or", "not"});
    if (operations.size() != 1) {
        element.RefuseCount("operation", operations.size(), "one of and, or, not");
    }
    const XmlElement& operation = operations[0];
    const bool isNot = operation.Name() == "not";
    BooleanGate gate{operation.Name() != "or", {}};
    for (const XmlElement& reference : operation.Children({"gateReference"})) {
        const bool complement = reference.Flag("use-as-complement") != isNot;
        gate.operands.push_back(
            {reference.Place(), reference.Require("ref", "the id of a gate"), complement});
    }
    if (isNot ? gate.operands.size() != 1 : gate.operands.size() < 2) {
        operation.RefuseCount("gateReference", gate.operands.size(), isNot ? "one" : "at least two");
    }
    return gate;
}

Divider ReadDivider(const XmlElement& element) {
    Divider divider;
    std::vector<XmlElement> children = element.Children({"fcs-dimension", "new-dimension", "value"});
    for (const XmlElement& child : children) {
        if (child.Name() != "value") continue;
        const std::optional<double> value = ParseNumber(child.Text());
        if (!value) child.Refuse("value", child.Text(), "a number");
        divider.values.push_back(*value);
    }
    divider.dimension = ReadDimension(element, children);
    if (divider.values.empty()) element.Refuse("value", std::nullopt, "at least one number");
    std::sort(divider.values.begin(), divider.values.end());
    return divider;
}

/// A value on a divider belongs to the side above it.
Range Between(const Divider& divider, double location) {
    const auto above = std::upper_bound(divider.values.begin(), divider.values.end(), location);
    Range range{divider.dimension, std::nullopt, std::nullopt};
    if (above != divider.values.begin()) range.min = *(above - 1);
    if (above != divider.values.end()) range.max = *above;
    return range;
}

RectangleGate ReadQuadrant(const XmlElement& element, const std::map<std::string, Divider>& dividers) {
    RectangleGate gate;
    std::set<std::string> used;
    for (const XmlElement& position : element.Children({"position"})) {
        const std::string id = position.Require("divider_ref", "the id of a divider");
        const auto divider = dividers.find(id);
        if (divider == dividers.end() || !used.insert(id).second) {
            position.Refuse("divider_ref", id, "a divider of the gate, each of them once");
        }
        gate.ranges.push_back(Between(divider->second, position.RequireNumber("location")));
    }
    if (gate.ranges.empty()) element.Refuse("position", std::nullopt, "at least one");
    return gate;
}

class GateReader {
public:
    explicit GateReader(Strategy& strategy) : strategy_(strategy) {}

    /// Whether `element` is a gate; it has been read then.
    bool Read(const XmlElement& element) {
        const std::string kind = element.Name();
        if (kind == "RectangleGate") {
            Add(element, element, ReadRectangle(element));
        } else if (kind == "PolygonGate") {
            Add(element, element, ReadPolygon(element));
        } else if (kind == "BooleanGate") {
            Add(element, element, ReadBoolean(element));
        } else if (kind == "QuadrantGate") {
            ReadQuadrants(element);
        } else if (kind == "EllipsoidGate") {
            element.Refuse("gate", kind,
                           "a rectangle, polygon, quadrant or boolean gate; this kind is not supported");
        } else {
            return false;
        }
        return true;
    }

private:
    /// Adds the gate that `element` describes; `owner` holds its parent.
    template <class Shape>
    void Add(const XmlElement& element, const XmlElement& owner, Shape shape) {
        Gate gate;
        gate.place = element.Place();
        gate.id = element.Require("id", "a name for the population");
        if (gate.id == Strategy::Everything || !ids_.insert(gate.id).second) {
            element.Refuse("id", gate.id, "a name that no other population has (All is every event)");
        }
        if (owner.Attribute("parent_id")) gate.parent = owner.Require("parent_id", "the id of a gate");
        gate.shape = std::move(shape);
        strategy_.gates.push_back(std::move(gate));
    }

    void ReadQuadrants(const XmlElement& element) {
        element.Children({"divider", "Quadrant"});
        element.Require("id", "a name for the gate");
        std::map<std::string, Divider> dividers;
        for (const XmlElement& divider : element.Named("divider")) {
            const std::string id = divider.Require("id", "a name to refer to it");
            if (!dividers.emplace(id, ReadDivider(divider)).second) {
                divider.Refuse("id", id, "an id that no other divider of the gate has");
            }
        }
        const std::vector<XmlElement> quadrants = element.Named("Quadrant");
        if (quadrants.empty()) element.Refuse("Quadrant", std::nullopt, "at least one");
        for (const XmlElement& quadrant : quadrants)
            Add(quadrant, element, ReadQuadrant(quadrant, dividers));
    }

    Strategy& strategy_;
    std::set<std::string> ids_;
};

void CheckRoot(const XmlElement& root) {
    if (root.Name() != "Gating-ML") root.Refuse("element", root.Name(), "Gating-ML");
    if (root.Namespace() != GatingNamespace) {
        root.Refuse("namespace", root.Namespace(), std::string(GatingNamespace) + ", version 2.0");
    }
}

}  // namespace

Strategy ReadStrategy(const std::string& path) {
    const XmlDocument document(path);
    const XmlElement root = document.Root();
    CheckRoot(root);
    Strategy strategy;
    GateReader gates(strategy);
    for (const XmlElement& element :
         root.Children({"RectangleGate", "PolygonGate", "QuadrantGate", "BooleanGate", "EllipsoidGate",
                        "transformation", "spectrumMatrix"})) {
        if (gates.Read(element)) continue;
        if (element.Name() == "transformation") {
            ReadTransformation(element, strategy);
        } else {
            ReadSpectrumMatrix(element, strategy);
        }
    }
    Link(strategy);
    return strategy;
}

}  // namespace Host
