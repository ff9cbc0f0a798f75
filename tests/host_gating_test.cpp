// Gates in the host program: what strategies mean, the tree that they make, and which are refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <sstream>

#include "support/gating_ml.h"
#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

const std::string XAbove = Rectangle("x", On("Par1", "min='2'"));
const std::string YAbove = Rectangle("y", On("Par2", "min='2'"));

class HostGating : public HostTest {
protected:
    /// All eight combinations of 1 and 2, Par1 changing fastest, then one event without numbers.
    std::string Cube() const {
        std::vector<float> values(27, std::numeric_limits<float>::quiet_NaN());
        for (unsigned i = 0; i < 24; ++i)
            values[i] = (i / 3 >> i % 3 & 1U) != 0 ? 2.0F : 1.0F;
        return Write(FcsBuilder::Floats(3, values));
    }

    std::string Strategy(const std::string& content) const { return Write(Document(content), "gates.xml"); }

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
    const std::map<std::string, std::string> expected{
        {"x", "010101010"},    {"y", "001100110"},      {"both", "000100000"},    {"either", "101110111"},
        {"not", "001000110"},  {"rest", "100110001"},   {"low", "010000000"},     {"high", "000001010"},
        {"none", "000000000"}, {"p", "001100100"},      {"ratio", "001000100"},   {"linear", "010101010"},
        {"log", "101010100"},  {"arsinh", "010101010"}, {"clipped", "001000100"}, {"dye", "010101010"},
        {"box", "000000100"}};
    EXPECT_EQ(Members(Cube(), EveryKind), expected);
}

/// Bounds are those of the document, to the last bit: between the floats that surround them.
TEST_F(HostGating, ComparesFloatsWithBoundsThatAreNone) {
    std::vector<float> values;
    std::string low;
    std::string high;
    std::string all;
    for (const double bound : {0.1, 0.7, 0.8, 1e300, 0.0, -0.7}) {
        for (const float limit : {-1e30F, 1e30F}) {
            auto value = static_cast<float>(bound);
            for (int step = 0; step < 3; ++step, value = std::nextafter(value, limit)) {
                values.push_back(value);
                low += value >= 0.1 && value < 0.7 ? '1' : '0';
                high += value >= 0.7 && value < 0.8 ? '1' : '0';
                all += std::isfinite(value) ? '1' : '0';
            }
        }
    }
    const std::map<std::string, std::string> expected{{"low", low}, {"high", high}, {"all", all}};
    EXPECT_EQ(Members(Write(FcsBuilder::Floats(1, values)),
                      Rectangle("low", On("Par1", "min='0.1' max='0.7'")) +
                          Rectangle("high", On("Par1", "min='0.7' max='0.8'")) +
                          Rectangle("all", On("Par1", "max='1e300'"))),
              expected);
}

TEST_F(HostGating, GatesOnCompensatedValues) {
    const std::string sample = Write(FcsBuilder::Small().Set("SPILL", "2,Par1,Par2,1,0.5,0,1"));
    const std::string gates =
        R"(<spectrumMatrix id='m'><fluorochromes><fcs-dimension name='A'/><fcs-dimension name='B'/>
        </fluorochromes><detectors><fcs-dimension name='Par2'/><fcs-dimension name='Par1'/></detectors>
        <spectrum><coefficient value='1'/><coefficient value='0.1'/></spectrum>
        <spectrum><coefficient value='0'/><coefficient value='1'/></spectrum></spectrumMatrix>)" +
        Rectangle("file", On("Par2", "max='19.5'", "FCS")) + Rectangle("raw", On("Par2", "max='19.5'")) +
        Rectangle("dye", On("B", "min='0' max='0.1'", "m") + On("A", "min='20' max='30'", "m"));
    const std::map<std::string, std::string> expected{{"file", "110"}, {"raw", "100"}, {"dye", "010"}};
    EXPECT_EQ(Members(sample, gates), expected);
    EXPECT_EQ(Members(sample, gates, {"--compensate", "none"}).at("file"), "100");
}

TEST_F(HostGating, TellsTheTreeAndTheStatisticsOfItsPopulations) {
    const std::string sample = Cube();
    const std::string gates =
        "<BooleanGate id='not' parent_id='y'><not><gateReference ref='x'/></not></BooleanGate>" + XAbove +
        YAbove + Rectangle("empty, &quot;too&quot;", On("Par1", "min='9'"), "not");
    const auto told = [&](const char* format) {
        return Run({"gate", sample, "--gates", Strategy(gates), "--format", format});
    };
    const json tree = told("json").Json()["populations"];
    const json stats = Stats(sample, {"--gates", Path("gates.xml")});
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
    for (const auto& [format, row] :
         {std::pair("table", "\n      not                 2           50     22.2222\n"),
          {"csv", ",9,,\"empty, \"\"too\"\"\",not,0,0,0\n"}})
        EXPECT_NE(told(format).out.find(row), std::string::npos) << told(format).out;
    const Strings one = {"--gates", Path("gates.xml"), "--population", "y"};
    EXPECT_EQ(Stats(sample, one)["populations"], json::array({stats["populations"][2]}));
}

/// One replacement makes each fault; messages name line, element and id, what stands there and what should.
TEST_F(HostGating, RefusesStrategiesThatAreWrong) {
    const std::string sample = Cube();
    const std::string faultless = Document(EveryKind);
    std::istringstream faults(R"(</QuadrantGate>||line 30 is
v2.0|v1.5|v1.5
RectangleGate id='dye'|RectangleGate|line 28: RectangleGate: id is missing
min='1.5'|min='1,5'|line 29: dimension of RectangleGate "dye": min is "1,5", expected a number
min='1.5'||dimension of RectangleGate "dye": min is missing
<RectangleGate|<RectangleGate id='e'/><RectangleGate|RectangleGate "e": dimension is "0 elements"
compensation-ref='m'||RectangleGate "dye": compensation-ref is missing
'Par3'|'Par9'|line 12: dimension of PolygonGate "p": name is "Par9", expected one of Par1, Par2, Par3
transformation id='v'|transformation id='s'|transformation-ref is "v", expected one of s, t, u, w
compensation-ref='m'|compensation-ref='n'|compensation-ref is "n", expected one of uncompensated, FCS, m
id='not'|id='p'|line 19: BooleanGate "p": id is "p"
id='not'|id='All'|id is "All"
parent_id='y'|parent_id='z'|line 11: PolygonGate "p": parent_id is "z", expected one of
ref='p'|ref='z'|line 17: gateReference of BooleanGate "both": ref is "z"
ref='p'|ref='rest'|BooleanGate "both": gate is "both"
parent_id='y'|parent_id='p'|PolygonGate "p": gate is "p"
<gateReference ref='p'/>||and of BooleanGate "both": gateReference is "1 elements", expected at least two
<not><gateReference ref='both'/></not>|<xor/>|xor of BooleanGate "not": element is "xor"
<vertex><coordinate value='3'/><coordinate value='0.5'/></vertex>||"2 elements", expected at least three
<dimension compensation-ref='FCS'><fcs-dimension name='Par3'/></dimension>||dimension is "1 elements"
<coordinate value='3'/>||vertex of PolygonGate "p": coordinate is "1 elements", expected two
<QuadrantGate|<EllipsoidGate id='e'/><QuadrantGate|EllipsoidGate "e": gate is "EllipsoidGate"
divider id='a'|divider id='e'|position of Quadrant "low": divider_ref is "a"
flin T='4'|logicle T='4'|"logicle", expected flin, flog, fasinh or fratio
flin T='4'|hyperlog T='4'|"hyperlog"
flin T='4'|fasinh T='4'|line 3: fasinh of transformation "t": M is missing
flin T='4'|flin T='0'|T is "0", expected a number above 0
<flin|<flog T='1' M='4'/><flin|formula is "2 elements"
<fcs-dimension name='Par1'/>||fcs-dimension is "1 elements", expected two
<coefficient|<coefficient value='1'/><coefficient|spectrum of spectrumMatrix "m": coefficient is "2 elements"
<spectrum><coefficient value='1'/></spectrum>||spectrumMatrix "m": spectrum is "0 elements"
coefficient value='1'|coefficient value='0'|spectrumMatrix "m": condition number is
min='1.5'><fcs-dimension name='A'|min='1.5'><fcs-dimension name='Par1'|name is "Par1", expected one of A
)");
    std::string from;
    std::string to;
    std::string expected;
    while (std::getline(std::getline(std::getline(faults, from, '|'), to, '|'), expected)) {
        SCOPED_TRACE(expected);
        std::string document = faultless;
        document.replace(document.find(from), from.size(), to);
        const Strings command{"gate", sample, "--gates", Write(document, "gates.xml")};
        EXPECT_TRUE(ExpectRefused(command, expected).Says("gates.xml, line"));
    }
}

TEST_F(HostGating, RefusesPopulationsThatAreNotThere) {
    const std::string sample = Cube();
    ExpectRefused({"stats", sample, "--gates", Strategy(XAbove + YAbove), "--population", "z"},
                  "\"z\", expected one of All, x, y");
    const std::string missing = Path("missing.xml");
    ExpectRefused({"gate", sample, "--gates", missing}, "missing.xml");
    ExpectRefused({"acquire", "-o", Path("out"), "--gates", missing}, "missing.xml");
    EXPECT_FALSE(std::filesystem::exists(Path("out")));
}

}  // namespace
}  // namespace Orvane::Testing
