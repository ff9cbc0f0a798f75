// Files that the host program writes: what is in them, and that they read back as what they were made from.
#include <gtest/gtest.h>

#include <limits>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

class HostConvert : public HostTest {
protected:
    /// Converts and returns the new file's path.
    std::string Convert(const std::string& path, const Strings& options = {}) {
        Strings command = {"convert", path, Path("out.fcs")};
        command.insert(command.end(), options.begin(), options.end());
        run_ = Run(command);
        EXPECT_EQ(run_.status, 0) << run_.err;
        return Path("out.fcs");
    }

    /// Warnings of the older file may be gone; everything else is the same.
    void ExpectSameStatistics(const std::string& a, const std::string& b, const Strings& options = {}) const {
        EXPECT_EQ(Stats(a, options)["populations"], Stats(b, options)["populations"]);
        EXPECT_EQ(Stats(b)["version"], "FCS3.1");
        EXPECT_EQ(Run({"info", b, "--strict"}).status, 0) << Run({"info", b, "--strict"}).err;
    }

    std::string DataOf(const std::string& path) const {
        const json info = Run({"info", path, "--format", "json"}).Json()["files"][0];
        return ReadFile(path).substr(info["data"]["begin"], info["data"]["length"]);
    }

    HostRun run_;
};

/// A few values that are easily damaged on their way.
FcsBuilder AwkwardColumn() {
    const std::vector<float> values = {-0.0F, 1e-42F, 3.4e38F, -1.5F, 16777217.0F, 0.1F};
    FcsBuilder builder('F', "4,3,2,1", {"32"}, static_cast<int>(values.size()));
    for (const float value : values)
        builder.data += EncodeFloat(value, "4321");
    return builder;
}

TEST_F(HostConvert, FloatsStayBitForBitAndDoublesHoldThem) {
    const FcsBuilder builder = AwkwardColumn();
    const std::string path = Write(builder);
    const std::string same = Convert(path, {"--order", "big"});
    EXPECT_EQ(DataOf(same), builder.data);
    ExpectSameStatistics(path, same);
    EXPECT_EQ(ReadFile(same).substr(ReadFile(same).size() - 8), "00000000");
    for (const char* order : {"little", "big"}) {
        for (const char* type : {"F", "D"}) {
            const std::string other = Convert(path, {"--order", order, "--type", type});
            ExpectSameStatistics(path, other);
            EXPECT_EQ(DataOf(Convert(other, {"--order", "big"})), builder.data);
        }
    }
}

TEST_F(HostConvert, IntegersAreClippedToTheirTypeAndCounted) {
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    FcsBuilder builder('F', "1,2,3,4", {"32", "32"}, 4);
    builder.Set("$P1R", "1024").Set("$P2R", "1024");
    for (const float value : {-1.0F, 2000.75F, 65535.5F, -Infinity, 65536.0F, 5.0F, NaN, 1e20F})
        builder.data += EncodeFloat(value);
    const std::string path = Write(builder);
    EXPECT_EQ(DataOf(Convert(path, {"--type", "I16", "--order", "big"})),
              EncodeWord(0, "21") + EncodeWord(2000, "21") + EncodeWord(65535, "21") + EncodeWord(0, "21") +
                  EncodeWord(65535, "21") + EncodeWord(5, "21") + EncodeWord(0, "21") +
                  EncodeWord(65535, "21"));
    EXPECT_NE(run_.out.find("Par1 is \"1 below 0, 1 above 65535, 1 not numbers\""), std::string::npos)
        << run_.out;
    EXPECT_NE(run_.out.find("Par2 is \"1 below 0, 1 above 65535\""), std::string::npos) << run_.out;

    const json wide = Stats(Convert(path, {"--type", "I32"}), {"--values", "channel"});
    EXPECT_EQ(Row(wide, "Par1")["max"], 65536);
    EXPECT_EQ(Row(wide, "Par2")["max"].get<float>(), 4294967295.0F);

    std::ofstream(Path("out.fcs")) << "old";
    EXPECT_EQ(Run({"convert", path, Path("out.fcs"), "--type", "I16", "--strict"}).status, 1);
    EXPECT_EQ(ReadFile(Path("out.fcs")), "old");
}

/// Channels keep the keywords that make scale values of them; scale values need none.
TEST_F(HostConvert, AmplificationIsAppliedOrKept) {
    FcsBuilder builder('I', "1,2,3,4", {"16", "16"}, 3);
    builder.Set("$P1E", "4,0.5").Set("$P1R", "1000").Set("$P2G", "2.5").Set("$P2R", "65536");
    for (const unsigned value : {0U, 7U, 999U, 65535U, 1010U, 8U})
        builder.data += EncodeWord(value, "12");
    const std::string path = Write(builder);
    ExpectSameStatistics(path, Convert(path));
    EXPECT_NE(run_.out.find("1 logarithmic parameters"), std::string::npos);
    json parameters = Run({"info", Path("out.fcs"), "--format", "json"}).Json()["files"][0]["parameters"];
    EXPECT_EQ(parameters[0]["amplification"], json({0, 0}));
    EXPECT_EQ(parameters[0]["range"], 5000);
    EXPECT_EQ(parameters[1]["range"], 26215);
    EXPECT_TRUE(parameters[1]["gain"].is_null());

    const std::string channels = Convert(path, {"--type", "I32", "--values", "channel"});
    EXPECT_NE(run_.out.find("Par1 is \"1 above 999\""), std::string::npos) << run_.out;
    parameters = Run({"info", channels, "--format", "json"}).Json()["files"][0]["parameters"];
    EXPECT_EQ(parameters[0]["amplification"], json({4, 0.5}));
    EXPECT_EQ(parameters[1]["gain"], 2.5);
    for (const char* kind : {"channel", "scale"})
        EXPECT_EQ(Row(Stats(path, {"--values", kind}), "Par2"),
                  Row(Stats(channels, {"--values", kind}), "Par2"));

    const HostRun floats = Run({"convert", path, Path("no.fcs"), "--values", "channel"});
    EXPECT_EQ(floats.status, 1);
    EXPECT_NE(floats.err.find("$P1"), std::string::npos) << floats.err;
}

TEST_F(HostConvert, KeepsOtherKeywords) {
    FcsBuilder builder = FcsBuilder::Small().Set("My Note", "a|b/c\\d!e~f^g#h*i;j\fk\x1el").Set("empty", " ");
    builder.Set("$P1N", "|A").Set("$P2N", "/\\!~^#*").Set("$P2S", "\xB5m").Set("$ORIGINALITY", "Original");
    builder.Set("$BEGINSTEXT", "0").Set("$BEGINANALYSIS", "  ").Set("$P1D", "Linear,0,1").version = "FCS3.0";
    builder.delimiter = '@';
    builder.header[4] = "    4110";
    const std::string path = Write(builder);
    const std::string converted = Convert(path);
    EXPECT_NE(run_.out.find("begin of ANALYSIS is \"4110\""), std::string::npos) << run_.out;
    ExpectSameStatistics(path, converted);
    const std::string text = ReadFile(converted);
    for (const char* part : {"My Note", "$P1D", "Linear,0,1", "\xC2\xB5m", "$P1E"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_EQ(text.find("$ORIGINALITY"), std::string::npos);
    EXPECT_EQ(text.find("$BEGINDATA"), text.rfind("$BEGINDATA"));
    const std::string again = Path("again.fcs");
    EXPECT_EQ(Run({"convert", converted, again}).status, 0);
    EXPECT_EQ(ReadFile(again), text) << "a second conversion changes nothing";
    EXPECT_EQ(Run({"convert", again, again}).status, 0);
    EXPECT_EQ(ReadFile(again), text) << "a file may take its own place";
}

/// A matrix that has been used is gone, so that nobody uses it again; one that has not stays.
TEST_F(HostConvert, CompensatesOnce) {
    const std::string path = Write(FcsBuilder::Small().Set("Spill", "2,Par1,Par2,1,0.5,0,1"));
    const std::string compensated = Convert(path);
    EXPECT_NE(run_.out.find("; compensated"), std::string::npos) << run_.out;
    ExpectSameStatistics(path, compensated);
    EXPECT_EQ(Row(Stats(compensated), "Par2")["max"], 28.5);
    EXPECT_EQ(ReadFile(compensated).find("Spill"), std::string::npos);
    const std::string raw = Convert(path, {"--compensate", "none"});
    ExpectSameStatistics(path, raw, {"--compensate", "none"});
    ExpectSameStatistics(path, raw);
}

TEST_F(HostConvert, WritesOnePopulation) {
    constexpr int Events = 140'000;
    FcsBuilder builder('F', "1,2,3,4", {"32"}, Events);
    for (int event = 0; event < Events; ++event)
        builder.data += EncodeFloat(static_cast<float>(event));
    const std::string path = Write(builder);
    const std::string strategy = Path("gates.xml");
    std::ofstream(strategy) << R"(<Gating-ML xmlns="http://www.isac-net.org/std/Gating-ML/v2.0/gating">)";
    for (const char* gate :
         {R"(id="some"><dimension min="65530" max="131073)", R"(id="none"><dimension max="0)"}) {
        std::ofstream(strategy, std::ios::app)
            << "<RectangleGate " << gate
            << R"(" compensation-ref="uncompensated"><fcs-dimension name="Par1"/>)"
            << "</dimension></RectangleGate>";
    }
    std::ofstream(strategy, std::ios::app) << "</Gating-ML>";
    const std::string some = Convert(path, {"--gates", strategy, "--population", "some"});
    EXPECT_EQ(DataOf(some), builder.data.substr(std::size_t{4} * 65530, std::size_t{4} * 65543));
    EXPECT_NE(run_.out.find("65543 of 140000, population some"), std::string::npos) << run_.out;
    EXPECT_EQ(Stats(some)["events"], 65543);
    EXPECT_EQ(Stats(Convert(path, {"--gates", strategy, "--population", "none"}))["events"], 0);
    EXPECT_EQ(DataOf(Convert(path, {"--gates", strategy, "--population", "All"})), builder.data);
    EXPECT_EQ(Run({"convert", path, some, "--gates", strategy, "--population", "more"}).status, 1);
}

TEST_F(HostConvert, WritesFilesWithoutEvents) {
    FcsBuilder builder('F', "1,2,3,4", {"32", "32"}, 0);
    builder.header[2] = builder.header[3] = "       0";
    builder.placesInText = false;
    const std::string path = Write(builder);
    const json file = Stats(Convert(path, {"--type", "I16"}));
    EXPECT_EQ(file["events"], 0);
    EXPECT_TRUE(file["warnings"].empty());
}

TEST_F(HostConvert, PlacesBeyondEightDigitsStandInTextOnly) {
    constexpr unsigned Events = 12'600'000;
    FcsBuilder builder('I', "1,2,3,4", {"8"}, Events);
    builder.data.assign(Events, '\1');
    builder.data.back() = '\2';
    const std::string converted = Convert(Write(builder), {"--type", "D"});
    const json info = Run({"info", converted, "--format", "json", "--strict"}).Json()["files"][0];
    EXPECT_EQ(info["header"]["data"], json({0, 0}));
    EXPECT_EQ(info["data"]["length"], 8 * Events);
    std::ifstream stream(converted, std::ios::binary);
    stream.seekg(-16, std::ios::end);
    std::string last(8, '\0');
    stream.read(last.data(), 8);
    EXPECT_EQ(last, EncodeDouble(2));
}

TEST_F(HostConvert, LeavesNothingBehindWhereItCannotWrite) {
    const std::string path = Write(FcsBuilder::Small());
    const HostRun run = Run({"convert", path, Path("no/such/directory/out.fcs")});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("out.fcs cannot be written"), std::string::npos) << run.err;
    EXPECT_EQ(Run({"convert", path, Path(".")}).status, 1);
    for (const Strings& wrong : std::vector<Strings>{{"--type", "A"},
                                                     {"--order", "middle"},
                                                     {"--population", "x"},
                                                     {"--gates", "x.xml"},
                                                     {"--values", "channel", "--compensate", "file"}}) {
        Strings command = {"convert", path, Path("out.fcs")};
        command.insert(command.end(), wrong.begin(), wrong.end());
        EXPECT_EQ(Run(command).status, 2);
    }
    EXPECT_FALSE(std::filesystem::exists(Path("out.fcs")));
}

}  // namespace
}  // namespace Orvane::Testing
