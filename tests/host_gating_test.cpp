// Gates in the host program: what strategies mean, the tree that they make, and which are refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "support/host_program.h"
#include "support/membership.h"

namespace Orvane::Testing {
namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

std::string On(const std::string& parameter, const std::string& attributes,
               const std::string& element = "dimension", const std::string& compensation = "uncompensated") {
    return "<" + element + " compensation-ref='" + compensation + "' " + attributes +
           "><fcs-dimension name='" + parameter + "'/></" + element + ">";
}

std::string Rectangle(const std::string& id, const std::string& dimensions) {
    return "<RectangleGate id='" + id + "'>" + dimensions + "</RectangleGate>";
}

std::string Scale(const std::string& kind) {
    return "<transformation id='t'>" + kind + "</transformation>";
}

const std::string XAbove = Rectangle("x", On("Par1", "min='2'"));
const std::string YAbove = Rectangle("y", On("Par2", "min='2'"));
const std::string XAndYAbove = XAbove + YAbove;
const std::string XTwice = XAbove + "\n" + XAbove;

class HostGating : public HostTest {
protected:
    /// All eight combinations of 1 and 2, Par1 changing fastest, then one event without numbers.
    std::string Cube() const {
        FcsBuilder builder('F', "1,2,3,4", {"32", "32", "32"}, 9);
        for (unsigned event = 0; event < 24; ++event)
            builder.data += EncodeFloat((event / 3 >> event % 3 & 1U) != 0 ? 2.0F : 1.0F);
        for (unsigned parameter = 0; parameter < 3; ++parameter)
            builder.data += EncodeFloat(std::numeric_limits<float>::quiet_NaN());
        return Write(builder);
    }

    std::string Strategy(const std::string& content) const {
        std::ofstream(Path("gates.xml"))
            << "<?xml version=\"1.0\"?>\n"
            << "<Gating-ML xmlns=\"http://www.isac-net.org/std/Gating-ML/v2.0/gating\">\n"
            << content << "\n</Gating-ML>\n";
        return Path("gates.xml");
    }

    /// The membership of every population, one character per event.
    std::map<std::string, std::string> Members(const std::string& sample, const std::string& content,
                                               Strings options = {}) const {
        options.insert(options.begin(),
                       {"gate", sample, "--gates", Strategy(content), "--membership", Path("members.csv")});
        const HostRun run = Run(options);
        EXPECT_EQ(run.status, 0) << run.err << content;
        return ReadMembership(Path("members.csv"));
    }
};

TEST_F(HostGating, EvaluatesEveryKindOfGate) {
    const std::string sample = Cube();
    const std::string ratio =
        "<transformation id='r'><fratio A='2' B='-1' C='0'><fcs-dimension name='Par1'/><fcs-dimension "
        "name='Par2'/></fratio></transformation>";
    const std::string newDimension =
        "<dimension compensation-ref='FCS' max='3'><new-dimension transformation-ref='r'/></dimension>";
    const std::string quadrants =
        "<QuadrantGate id='q' parent_id='x'>" + On("Par2", "id='a'", "divider") +
        "<divider id='b' compensation-ref='FCS'><fcs-dimension name='Par3'/><value>2</value><value> 1 "
        "</value></divider>"
        "<Quadrant id='low'><position divider_ref='a' location='0'/><position divider_ref='b' "
        "location='1.5'/>"
        "</Quadrant><Quadrant id='high'><position divider_ref='b' location='2'/></Quadrant>"
        "<Quadrant id='none'><position divider_ref='b' location='0.5'/></Quadrant></QuadrantGate>";
    const auto valued = [](std::string gate) {
        const std::string end = "'Par2'/>";
        return gate.replace(gate.find(end), end.size(), end + "<value>1.5</value>");
    };
    struct Case {
        std::string content;
        std::map<std::string, std::string> expected;
    };
    for (const Case& test : std::vector<Case>{
             {Rectangle("g", On("Par1", "min='1' max='2'")), {{"g", "101010100"}}},
             {Rectangle("g", On("Par1", "max='2.5'") + On("Par2", "min='2'")), {{"g", "001100110"}}},
             {Rectangle("g", On("Par1", "min='2'") + On("Par2", "min='2'") + On("Par3", "max='2'")),
              {{"g", "000100000"}}},
             {"<PolygonGate id='g'>" + On("Par1", "") + On("Par3", "") +
                  "<vertex><coordinate value='0'/><coordinate value='0'/></vertex>"
                  "<vertex><coordinate value='3'/><coordinate value='0.5'/></vertex>"
                  "<vertex><coordinate value='0'/><coordinate value='3.5'/></vertex></PolygonGate>",
              {{"g", "111110100"}}},
             {valued(quadrants) + XAbove,
              {{"x", "010101010"}, {"low", "010000000"}, {"high", "000001010"}, {"none", "000000000"}}},
             {"<BooleanGate id='both'><and><gateReference ref='x'/><gateReference "
              "ref='y'/></and></BooleanGate>"
              "<BooleanGate id='either'><or><gateReference ref='x' use-as-complement='1'/><gateReference "
              "ref='y'/></or></BooleanGate>"
              "<BooleanGate id='not' parent_id='y'><not><gateReference ref='x'/></not></BooleanGate>"
              "<BooleanGate id='rest'><and><gateReference ref='not' use-as-complement='true'/><gateReference "
              "ref='both' use-as-complement='true'/></and></BooleanGate>" +
                  XAndYAbove,
              {{"x", "010101010"},
               {"y", "001100110"},
               {"both", "000100010"},
               {"either", "101110111"},
               {"not", "001000100"},
               {"rest", "110011001"}}},
             {ratio + Rectangle("g", newDimension), {{"g", "001000100"}}},
             {Scale("<flin T='3' A='1'/>") + Rectangle("g", On("Par1", "min='0.75' transformation-ref='t'")),
              {{"g", "010101010"}}},
             {Scale("<flog T='2' M='1'/>") + Rectangle("g", On("Par1", "max='0.7' transformation-ref='t'")),
              {{"g", "101010100"}}},
             {Scale("<fasinh T='2' M='1' A='0'/>") +
                  Rectangle("g", On("Par1", "min='0.99' transformation-ref='t'")),
              {{"g", "010101010"}}},
             {"<transformation id='t' boundMax='0.6'><flin T='4' A='0'/></transformation>" +
                  Rectangle("g", On("Par1", "max='0.5' transformation-ref='t'") +
                                     On("Par2", "max='1' min='0.5' transformation-ref='t'")),
              {{"g", "001000100"}}}}) {
        EXPECT_EQ(Members(sample, test.content), test.expected) << test.content;
    }
}

/// Bounds are those of the document, to the last bit: between the floats that surround them.
TEST_F(HostGating, ComparesFloatsWithBoundsThatAreNone) {
    FcsBuilder builder('F', "1,2,3,4", {"32"}, 0);
    std::string expected;
    for (const double bound : {0.1, 0.3, 1e300, 0.0, -0.7}) {
        for (const float limit : {-1e30F, 1e30F}) {
            auto value = static_cast<float>(bound);
            for (int step = 0; step < 3; ++step, value = std::nextafter(value, limit)) {
                builder.data += EncodeFloat(value);
                expected += value >= 0.1 && value < 0.3 ? '1' : '0';
            }
        }
    }
    builder.Set("$TOT", std::to_string(expected.size()));
    const auto members = Members(Write(builder), Rectangle("g", On("Par1", "min='0.1' max='0.3'")) +
                                                     Rectangle("all", On("Par1", "max='1e300'")));
    EXPECT_EQ(members.at("g"), expected);
    EXPECT_EQ(std::count(members.at("all").begin(), members.at("all").end(), '0'), 2) << "infinity alone";
}

TEST_F(HostGating, GatesOnCompensatedValues) {
    const std::string sample = Write(FcsBuilder::Small().Set("SPILL", "2,Par1,Par2,1,0.5,0,1"));
    const std::string matrix =
        "<spectrumMatrix id='m'><fluorochromes><fcs-dimension name='A'/><fcs-dimension "
        "name='B'/></fluorochromes>"
        "<detectors><fcs-dimension name='Par2'/><fcs-dimension name='Par1'/></detectors>"
        "<spectrum><coefficient value='1'/><coefficient value='0.1'/></spectrum>"
        "<spectrum><coefficient value='0'/><coefficient value='1'/></spectrum></spectrumMatrix>";
    const std::string gates = matrix + Rectangle("file", On("Par2", "max='19.5'", "dimension", "FCS")) +
                              Rectangle("raw", On("Par2", "max='19.5'")) +
                              Rectangle("dye", On("B", "min='0' max='0.1'", "dimension", "m") +
                                                   On("A", "min='20' max='30'", "dimension", "m"));
    const std::map<std::string, std::string> expected{{"file", "110"}, {"raw", "100"}, {"dye", "010"}};
    EXPECT_EQ(Members(sample, gates), expected);
    EXPECT_EQ(Members(sample, gates, {"--compensate", "none"}).at("file"), "100");
}

TEST_F(HostGating, TellsTheTreeAndTheStatisticsOfItsPopulations) {
    const std::string sample = Cube();
    const std::string gates =
        "<BooleanGate id='not' parent_id='y'><not><gateReference ref='x'/></not></BooleanGate>" + XAbove +
        YAbove + "<RectangleGate id='empty, &quot;too&quot;' parent_id='not'>" + On("Par1", "min='9'") +
        "</RectangleGate>";
    const json tree =
        Run({"gate", sample, "--gates", Strategy(gates), "--format", "json"}).Json()["populations"];
    const json stats =
        Run({"stats", sample, "--gates", Strategy(gates), "--format", "json"}).Json()["files"][0];
    const json expected = {{"All", nullptr, 9, nullptr, 100.0},
                           {"x", "All", 4, 44.444443, 44.444443},
                           {"y", "All", 4, 44.444443, 44.444443},
                           {"not", "y", 2, 50.0, 22.222221},
                           {"empty, \"too\"", "not", 0, 0.0, 0.0}};
    ASSERT_EQ(tree.size(), expected.size());
    ASSERT_EQ(stats["populations"].size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const json& row = tree[i];
        EXPECT_EQ(json::array({row["name"], row["parent"], row["count"], row["percent_of_parent"],
                               row["percent_of_total"]}),
                  expected[i]);
        json withStatistics = stats["populations"][i];
        EXPECT_EQ(withStatistics["statistics"][2]["count"], row["count"]);
        withStatistics.erase("statistics");
        EXPECT_EQ(withStatistics, row);
    }
    EXPECT_EQ(stats["populations"][3]["statistics"][1]["mean"], 2);
    EXPECT_TRUE(stats["populations"][0]["statistics"][0]["mean"].is_null());
    const std::string table = Run({"gate", sample, "--gates", Path("gates.xml")}).out;
    EXPECT_NE(table.find("\n      not                 2           50     22.2222\n"), std::string::npos)
        << table;
    const std::string csv = Run({"gate", sample, "--gates", Path("gates.xml"), "--format", "csv"}).out;
    EXPECT_NE(csv.find(",9,,\"empty, \"\"too\"\"\",not,0,0,0\n"), std::string::npos) << csv;
    const Strings one = {"--gates", Path("gates.xml"), "--population", "y"};
    EXPECT_EQ(Stats(sample, one)["populations"], json::array({stats["populations"][2]}));
}

/// Every message names the line, the element and its id, what stands there and what should.
TEST_F(HostGating, RefusesStrategiesThatAreWrong) {
    const std::string sample = Cube();
    const auto reference = [](const std::string& id, const std::string& to) {
        return "<BooleanGate id='" + id + "'><not>\n<gateReference ref='" + to + "'/></not></BooleanGate>";
    };
    const std::string vertex = "<vertex><coordinate value='0'/><coordinate value='0'/></vertex>";
    const auto polygon = [&](const std::string& more) {
        return "<PolygonGate id='p'>" + On("Par1", "") + more + vertex + vertex + "</PolygonGate>";
    };
    const auto matrix = [](const std::string& spectrum) {
        return "<spectrumMatrix id='m'><fluorochromes><fcs-dimension name='A'/></fluorochromes><detectors>"
               "<fcs-dimension name='Par1'/></detectors>" +
               spectrum + "</spectrumMatrix>";
    };
    struct Case {
        std::string content;
        std::string expected;  ///< the message behind the name of the document
    };
    for (const Case& test : std::vector<Case>{
             {"<RectangleGate", "line 4 is"},
             {"<RectangleGate>" + On("Par1", "min='1'") + "</RectangleGate>",
              "line 3: RectangleGate: id is missing"},
             {"\n" + Rectangle("r", "\n" + On("Par1", "min='1,5'")),
              "line 5: dimension of RectangleGate \"r\": min is \"1,5\", expected a number"},
             {Rectangle("r", On("Par1", "")), "dimension of RectangleGate \"r\": min is missing"},
             {Rectangle("r", ""), "RectangleGate \"r\": dimension is \"0 elements\""},
             {Rectangle("r", "<dimension min='1'><fcs-dimension name='Par1'/></dimension>"),
              "RectangleGate \"r\": compensation-ref is missing"},
             {Rectangle("r", On("Par9", "min='1'")),
              "line 3: dimension of RectangleGate \"r\": name is \"Par9\", expected one of Par1, Par2, Par3"},
             {Rectangle("r", On("Par1", "min='1' transformation-ref='t'")),
              "transformation-ref is \"t\", expected none"},
             {Rectangle("r", On("Par1", "min='1'", "dimension", "m")),
              "compensation-ref is \"m\", expected one of uncompensated, FCS"},
             {XTwice, "line 4: RectangleGate \"x\": id is \"x\""},
             {Rectangle("All", On("Par1", "min='1'")), "id is \"All\""},
             {"<RectangleGate id='r' parent_id='z'>" + On("Par1", "min='1'") + "</RectangleGate>",
              "line 3: RectangleGate \"r\": parent_id is \"z\", expected one of r"},
             {reference("b", "z"), "line 4: gateReference of BooleanGate \"b\": ref is \"z\""},
             {reference("a", "b") + reference("b", "c") + reference("c", "b"),
              "BooleanGate \"b\": gate is \"b\""},
             {"<RectangleGate id='r' parent_id='r'>" + On("Par1", "min='1'") + "</RectangleGate>",
              "RectangleGate \"r\": gate is \"r\""},
             {"<BooleanGate id='b'><and><gateReference ref='x'/></and></BooleanGate>" + XAbove,
              "and of BooleanGate \"b\": gateReference is \"1 elements\", expected at least two"},
             {"<BooleanGate id='b'><xor/></BooleanGate>", "xor of BooleanGate \"b\": element is \"xor\""},
             {polygon(On("Par2", "")),
              "PolygonGate \"p\": vertex is \"2 elements\", expected at least three"},
             {polygon(""), "PolygonGate \"p\": dimension is \"1 elements\", expected two"},
             {polygon(On("Par2", "") + "<vertex><coordinate value='0'/></vertex>"),
              "vertex of PolygonGate \"p\": coordinate is \"1 elements\", expected two"},
             {"<EllipsoidGate id='e'/>", "EllipsoidGate \"e\": gate is \"EllipsoidGate\""},
             {"<QuadrantGate id='q'><Quadrant id='a'><position divider_ref='d' location='1'/></Quadrant>"
              "</QuadrantGate>",
              "position of Quadrant \"a\": divider_ref is \"d\""},
             {Scale("<logicle T='1' M='1' W='0' A='0'/>"),
              "\"logicle\", expected flin, flog, fasinh or fratio"},
             {Scale("<hyperlog T='1' M='1' W='0' A='0'/>"), "\"hyperlog\""},
             {Scale("<fasinh T='1000' A='1'/>"), "line 3: fasinh of transformation \"t\": M is missing"},
             {Scale("<flin T='0' A='0'/>"), "T is \"0\", expected a number above 0"},
             {Scale("<flog T='1' M='4'/><flin T='1' A='0'/>"), "formula is \"2 elements\""},
             {Scale("<fratio A='1' B='0' C='0'><fcs-dimension name='Par1'/></fratio>"),
              "fcs-dimension is \"1 elements\", expected two"},
             {matrix("<spectrum><coefficient value='1'/><coefficient value='0'/></spectrum>"),
              "spectrum of spectrumMatrix \"m\": coefficient is \"2 elements\", expected 1"},
             {matrix(""), "spectrumMatrix \"m\": spectrum is \"0 elements\""},
             {matrix("<spectrum><coefficient value='0'/></spectrum>") +
                  Rectangle("r", On("A", "min='1'", "dimension", "m")),
              "spectrumMatrix \"m\": condition number is"},
             {matrix("<spectrum><coefficient value='1'/></spectrum>") +
                  Rectangle("r", On("Par1", "min='1'", "dimension", "m")),
              "name is \"Par1\", expected one of A"}}) {
        const HostRun run = Run({"gate", sample, "--gates", Strategy(test.content)});
        EXPECT_EQ(run.status, 1) << test.content;
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find("gates.xml, line"), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(test.expected), std::string::npos) << run.err << test.expected;
    }
    std::ofstream(Path("old.xml"))
        << "<Gating-ML xmlns='http://www.isac-net.org/std/Gating-ML/v1.5/gating'/>";
    EXPECT_NE(Run({"gate", sample, "--gates", Path("old.xml")}).err.find("v1.5"), std::string::npos);
    EXPECT_EQ(Run({"gate", sample, "--gates", Path("missing.xml")}).status, 1);
    const HostRun unknown = Run({"stats", sample, "--gates", Strategy(XAndYAbove), "--population", "z"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("\"z\", expected one of All, x, y"), std::string::npos) << unknown.err;
    EXPECT_EQ(Run({"gate", sample}).status, 2);
    EXPECT_EQ(Run({"stats", sample, "--population", "x"}).status, 2);
}

}  // namespace
}  // namespace Orvane::Testing
