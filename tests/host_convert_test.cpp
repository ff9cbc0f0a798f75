// Files that the host program writes: what is in them, and that they read back as what they were made from.
#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "support/gating_ml.h"
#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

class HostConvert : public HostTest {
protected:
    /// Converts and returns the new file's path.
    std::string Convert(const std::string& path, Strings options = {}, int status = 0) {
        options.insert(options.begin(), {"convert", path, Path("out.fcs")});
        run_ = Run(options);
        EXPECT_EQ(run_.status, status) << run_.err;
        return Path("out.fcs");
    }

    void ExpectSaid(const std::string& part) const {
        EXPECT_TRUE(run_.Says(part)) << run_.out << run_.err << part;
    }

    json Info(const std::string& path) const { return Tell("info", path, {"--strict"}); }

    /// Warnings of the older file may be gone; everything else is the same.
    void ExpectSameStatistics(const std::string& a, const std::string& b, const Strings& options = {}) const {
        EXPECT_EQ(Stats(a, options)["populations"], Stats(b, options)["populations"]);
        EXPECT_EQ(Info(b)["version"], "FCS3.1");
    }

    HostRun run_;
};

TEST_F(HostConvert, FloatsStayBitForBitAndDoublesHoldThem) {
    FcsBuilder builder('F', "4,3,2,1", {"32"}, 6);
    for (const float easilyDamaged : {-0.0F, 1e-42F, 3.4e38F, -1.5F, 16777217.0F, 0.1F})
        builder.data += EncodeFloat(easilyDamaged, "4321");
    const std::string path = Write(builder);
    for (const char* order : {"little", "big"}) {
        for (const char* type : {"F", "D"}) {
            const std::string other = Convert(path, {"--order", order, "--type", type});
            ExpectSameStatistics(path, other);
            EXPECT_EQ(ReadFile(other).substr(ReadFile(other).size() - 8), "00000000");
            EXPECT_EQ(DataOf(Convert(other, {"--order", "big"})), builder.data);
        }
    }
}

TEST_F(HostConvert, IntegersAreClippedToTheirTypeAndCounted) {
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    FcsBuilder builder = FcsBuilder::Floats(2, {-1, 2000.75F, 65535.5F, -Infinity, 65536, 5, NaN, 1e20F});
    const std::string path = Write(builder.Set("$P1R", "1024").Set("$P2R", "1024"));
    std::string clipped;
    for (const unsigned value : {0U, 2000U, 65535U, 0U, 65535U, 5U, 0U, 65535U})
        clipped += EncodeWord(value, "21");
    EXPECT_EQ(DataOf(Convert(path, {"--type", "I16", "--order", "big"})), clipped);
    ExpectSaid("Par1 is \"1 below 0, 1 above 65535, 1 not numbers\"");
    ExpectSaid("Par2 is \"1 below 0, 1 above 65535\"");

    const json wide = Stats(Convert(path, {"--type", "I32"}), {"--values", "channel"});
    EXPECT_EQ(Row(wide, "Par1")["max"], 65536);
    EXPECT_EQ(Row(wide, "Par2")["max"].get<float>(), 4294967295.0F);

    std::ofstream(Path("out.fcs")) << "old";
    EXPECT_EQ(ReadFile(Convert(path, {"--type", "I16", "--strict"}, 1)), "old");
}

TEST_F(HostConvert, DoublesBeyondFloatsAreCounted) {
    FcsBuilder builder('D', "8,7,6,5,4,3,2,1", {"64"}, 2);
    builder.data = EncodeDouble(1e300, "87654321") + EncodeDouble(2, "87654321");
    Convert(Write(builder), {"--type", "D"});
    ExpectSaid("DATA of Par1 is \"1 infinite values\", expected numbers that 32-bit floats hold");
    Convert(Path("a.fcs"), {"--strict"}, 1);
}

/// Channels keep the keywords that make scale values of them; scale values need none.
TEST_F(HostConvert, AmplificationIsAppliedOrKept) {
    FcsBuilder builder('I', "1,2,3,4", {"16", "16"}, 3);
    builder.Set("$P1E", "4,0.5").Set("$P1R", "1000").Set("$P2G", "2.5").Set("$P2R", "65536");
    for (const unsigned value : {0U, 7U, 999U, 65535U, 1010U, 8U})
        builder.data += EncodeWord(value, "12");
    const std::string path = Write(builder);
    ExpectSameStatistics(path, Convert(path));
    ExpectSaid("1 logarithmic parameters");
    const auto scaling = [&] {
        const json parameters = Info(Path("out.fcs"))["parameters"];
        return json{parameters[0]["amplification"], parameters[0]["range"], parameters[1]["range"],
                    parameters[1]["gain"]};
    };
    EXPECT_EQ(scaling(), json({{0, 0}, 5000, 26215, nullptr}));

    const std::string channels = Convert(path, {"--type", "I32", "--values", "channel"});
    ExpectSaid("Par1 is \"1 above 999\"");
    EXPECT_EQ(scaling(), json({{4, 0.5}, 1000, 65536, 2.5}));
    for (const char* kind : {"channel", "scale"})
        EXPECT_EQ(Row(Stats(path, {"--values", kind}), "Par2"),
                  Row(Stats(channels, {"--values", kind}), "Par2"));

    Convert(path, {"--values", "channel"}, 1);
    ExpectSaid("$P1");
}

TEST_F(HostConvert, KeepsOtherKeywords) {
    FcsBuilder builder = FcsBuilder::Small().Set("My Note", "a|b/c\\d!e~f^g#h*i;j\fk\x1el").Set("empty", " ");
    builder.Set("$P1N", "|A").Set("$P2N", "/\\!~^#*").Set("$P2S", "\xB5m").Set("$ORIGINALITY", "Original");
    builder.Set("$BEGINSTEXT", "0").Set("$BEGINANALYSIS", "  ").Set("$P1D", "Linear,0,1").version = "FCS3.0";
    builder.delimiter = '@';
    builder.header[4] = "    4110";
    const std::string path = Write(builder);
    const std::string converted = Convert(path);
    ExpectSaid("begin of ANALYSIS is \"4110\"");
    ExpectSameStatistics(path, converted);
    const std::string text = ReadFile(converted);
    for (const char* part : {"My Note", "$P1D", "Linear,0,1", "\xC2\xB5m", "$P1E"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_EQ(text.find("$ORIGINALITY"), std::string::npos);
    EXPECT_EQ(text.find("$BEGINDATA"), text.rfind("$BEGINDATA"));
    EXPECT_EQ(ReadFile(Convert(converted)), text) << "a second conversion, in place, changes nothing";
}

/// A matrix that has been used is gone, so that nobody uses it again; one that has not stays.
TEST_F(HostConvert, CompensatesOnce) {
    const std::string path = Write(FcsBuilder::Small().Set("Spill", "2,Par1,Par2,1,0.5,0,1"));
    const std::string compensated = Convert(path);
    ExpectSaid("; compensated");
    ExpectSameStatistics(path, compensated);
    EXPECT_EQ(Row(Stats(compensated), "Par2")["max"], 28.5);
    EXPECT_EQ(ReadFile(compensated).find("Spill"), std::string::npos);
    const std::string raw = Convert(path, {"--compensate", "none"});
    ExpectSameStatistics(path, raw, {"--compensate", "none"});
    ExpectSameStatistics(path, raw);
}

TEST_F(HostConvert, WritesOnePopulation) {
    constexpr int Events = 140'000;
    std::vector<float> values(Events);
    std::iota(values.begin(), values.end(), 0.0F);
    const FcsBuilder builder = FcsBuilder::Floats(1, values);
    const std::string path = Write(builder);
    const std::string gates = Write(Document(Rectangle("some", On("Par1", "min='65530' max='131073'")) +
                                             Rectangle("none", On("Par1", "max='0'"))),
                                    "gates.xml");
    EXPECT_EQ(DataOf(Convert(path, {"--gates", gates, "--population", "some"})),
              builder.data.substr(std::size_t{4} * 65530, std::size_t{4} * 65543));
    ExpectSaid("65543 of 140000, population some");
    EXPECT_EQ(DataOf(Convert(path, {"--gates", gates, "--population", "All"})), builder.data);
    Convert(path, {"--gates", gates, "--population", "more"}, 1);
    std::string source = path;
    for (const Strings& options : {Strings{"--gates", gates, "--population", "none"}, {"--type", "I16"}}) {
        source = Convert(source, options);
        EXPECT_EQ(Stats(source)["events"], 0);
        EXPECT_EQ(Stats(source)["warnings"], json::array());
    }
}

TEST_F(HostConvert, PlacesBeyondEightDigitsStandInTextOnly) {
    constexpr unsigned Events = 12'600'000;
    FcsBuilder builder('I', "1,2,3,4", {"8"}, Events);
    builder.data.assign(Events, '\1');
    builder.data.back() = '\2';
    const std::string converted = Convert(Write(builder), {"--type", "D"});
    const json info = Info(converted);
    EXPECT_EQ(info["header"]["data"], json({0, 0}));
    EXPECT_EQ(info["data"]["length"], 8 * Events);
    EXPECT_EQ(DataOf(converted).substr(std::size_t{8} * (Events - 1)), EncodeDouble(2));
}

}  // namespace
}  // namespace Orvane::Testing
