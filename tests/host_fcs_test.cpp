// FCS files of every form, good and damaged, through the host program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <utility>

#include "support/host_program.h"

namespace Orvane::Testing {
namespace {

using HostFcs = HostTest;

using Columns = std::vector<std::vector<double>>;

/// Three events determine their minimum, median and maximum, and these determine the events but for their
/// order.
void ExpectColumns(const json& file, Columns columns) {
    for (std::size_t p = 0; p < columns.size(); ++p) {
        std::sort(columns[p].begin(), columns[p].end());
        const json row = Row(file, "Par" + std::to_string(p + 1));
        ASSERT_TRUE(row.is_object());
        EXPECT_EQ(row["min"].get<float>(), static_cast<float>(columns[p][0]));
        EXPECT_EQ(row["median"].get<float>(), static_cast<float>(columns[p][1]));
        EXPECT_EQ(row["max"].get<float>(), static_cast<float>(columns[p][2]));
    }
}

/// Every order of four bytes.
Strings ByteOrders() {
    Strings orders;
    std::string digits = "1234";
    do {
        orders.push_back({digits[0], ',', digits[1], ',', digits[2], ',', digits[3]});
    } while (std::next_permutation(digits.begin(), digits.end()));
    return orders;
}

/// The digits of a $BYTEORD that concern a word of `bits` bits.
std::string OrderOf(std::string byteOrder, unsigned bits) {
    std::erase_if(byteOrder, [&](char c) { return c == ',' || c > static_cast<char>('0' + bits / 8); });
    return byteOrder;
}

TEST_F(HostFcs, ReadsIntegersOfEveryWidthMixAndByteOrder) {
    std::mt19937 random(7);
    for (const Strings& widths : std::vector<Strings>{
             {"32", "32"}, {"16", "16"}, {"24"}, {"8", "8", "8"}, {"16", "32"}, {"8", "16", "24", "32"}}) {
        for (const std::string& order : ByteOrders()) {
            FcsBuilder builder('I', order, widths, 3);
            Columns columns(widths.size());
            for (std::size_t i = 0; i < 3 * widths.size(); ++i) {
                const std::size_t p = i % widths.size();
                const auto bits = static_cast<unsigned>(std::stoul(widths[p]));
                const auto value = static_cast<std::uint32_t>(random()) >> (32 - bits);
                builder.data += EncodeWord(value, OrderOf(order, bits));
                columns[p].push_back(value);
            }
            const json file = Stats(Write(builder), {"--values", "channel"});
            EXPECT_TRUE(file["warnings"].empty());
            ExpectColumns(file, columns);
        }
    }
}

TEST_F(HostFcs, ReadsFloatsAndDoublesInTheirByteOrders) {
    const std::vector<double> values = {-1.5, 3.25e5, 1.0 / 3};
    for (const std::string& order : ByteOrders()) {
        FcsBuilder builder('F', order, {"32"}, 3);
        for (const double value : values)
            builder.data += EncodeFloat(static_cast<float>(value), OrderOf(order, 32));
        ExpectColumns(Stats(Write(builder)), {values});
    }
    for (const auto& [order, digits] :
         {std::pair("1,2,3,4", "12345678"), std::pair("8,7,6,5,4,3,2,1", "87654321")}) {
        FcsBuilder builder('D', order, {"64"}, 3);
        for (const double value : values)
            builder.data += EncodeDouble(value, digits);
        ExpectColumns(Stats(Write(builder)), {values});
    }
}

TEST_F(HostFcs, ReadsEveryFormOfAscii) {
    for (const auto& [widths, data] : std::vector<std::pair<Strings, std::string>>{
             {{"4", "4"}, "004200070043000800440009"},
             {{"4", "3"}, "  42  7  43  8  44  9"},
             {{"12", "1"}, "000000000042700000000004380000000000449"},
             {{"4", "3"}, "42  7  43  8  44  9  "},
             {{"*", "*"},
              "42 7\r\n43,8\t44  ,0000000000000000000000000000000000000000000000000000000000000000009"}}) {
        const json file = Stats(Write(FcsBuilder('A', "", widths, 3, data)));
        ExpectColumns(file, {{42, 43, 44}, {7, 8, 9}});
        EXPECT_TRUE(file["warnings"].empty()) << data;
    }
}

TEST_F(HostFcs, AppliesMaskAmplificationAndGain) {
    FcsBuilder builder('I', "1,2,3,4", {"16", "16", "16"}, 3);
    builder.Set("$P1R", "1000").Set("$P2R", "1024").Set("$P2E", "4.0,0").Set("$P3R", "1024").Set("$P3G", "8");
    for (const unsigned value : {0xFC00U | 1023U, 256U, 512U}) {
        for (int p = 0; p < 3; ++p)
            builder.data += EncodeWord(value, "12");
    }
    const std::vector<double> channels{1023, 256, 512};
    const json scale = Stats(Write(builder));
    ExpectColumns(scale, {channels, {std::pow(10.0, 4.0 * 1023 / 1024), 10, 100}, {127.875, 32, 64}});
    ASSERT_EQ(scale["warnings"].size(), 1U);
    EXPECT_NE(scale["warnings"][0].get<std::string>().find("taken as 4,1"), std::string::npos);
    ExpectColumns(Stats(Path("a.fcs"), {"--values", "channel"}), {channels, channels, channels});

    const std::string floats = Write(FcsBuilder::Small().Set("$P1G", "0.1"));
    ExpectColumns(Stats(floats), {{10, 20, 30}});
    ExpectColumns(Stats(floats, {"--values", "channel"}), {{1, 2, 3}});
}

/// Events that need several sections, each of them several segments, whose borders fall on whole events.
TEST_F(HostFcs, ReadsThroughManySectionsAndSegments) {
    constexpr int Events = 70001;
    constexpr std::size_t Parameters = 21;
    FcsBuilder builder('D', "1,2,3,4", Strings(Parameters, "64"), Events);
    for (int event = 0; event < Events; ++event) {
        for (std::size_t p = 0; p < Parameters; ++p) {
            builder.data += EncodeDouble(static_cast<double>(event) - 1000.0 * static_cast<double>(p));
        }
    }
    const json file = Stats(Write(builder));
    for (std::size_t p = 0; p < Parameters; ++p) {
        const json row = Row(file, "Par" + std::to_string(p + 1));
        const double shift = -1000.0 * static_cast<double>(p);
        EXPECT_EQ(row["count"], Events);
        EXPECT_EQ(row["min"], shift);
        EXPECT_EQ(row["max"], Events - 1 + shift);
        EXPECT_EQ(row["median"], 35000 + shift);
        EXPECT_NEAR(row["mean"].get<double>(), 35000 + shift, 0.01);
    }
}

TEST_F(HostFcs, ReadsBeyondFourGibibytes) {
    constexpr std::uint64_t Begin = 4500000000;
    FcsBuilder builder = FcsBuilder::Small();
    builder.header[2] = builder.header[3] = "       0";
    builder.placesInText = false;
    const std::string data = std::exchange(builder.data, "");
    builder.Set("$BEGINDATA", std::to_string(Begin)).Set("$ENDDATA", std::to_string(Begin + data.size() - 1));
    const std::string path = Write(builder);
    std::filesystem::resize_file(path, Begin);
    std::ofstream(path, std::ios::binary | std::ios::app) << data;
    ExpectColumns(Stats(path), {{1, 2, 3}});
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(HostFcs, SaysThatMemoryIsShort) {
    FcsBuilder builder = FcsBuilder::Small().Set("$TOT", "500000000");
    builder.header[3] = "       0";
    builder.placesInText = false;
    const std::string path = Write(builder);
    std::filesystem::resize_file(path, 4000004096);
    const HostRun run = Run({"stats", path}, "ulimit -v 150000; ");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "orvane: " + path + ": there is not enough memory for its events\n");
}
#endif

FcsBuilder With(const std::string& keyword, const std::string& value) {
    return FcsBuilder::Small().Set(keyword, value);
}

FcsBuilder Without(const std::string& keyword) {
    return FcsBuilder::Small().Remove(keyword);
}

template <class Member>
FcsBuilder With(Member FcsBuilder::*part, const std::type_identity_t<Member>& value) {
    FcsBuilder builder = FcsBuilder::Small();
    builder.*part = value;
    return builder;
}

FcsBuilder WithHeader(std::size_t index, const std::string& field, bool placesInText = true) {
    FcsBuilder builder = With(&FcsBuilder::placesInText, placesInText);
    builder.header[index] = field;
    return builder;
}

FcsBuilder WithSupplementalText() {
    FcsBuilder builder = With(&FcsBuilder::behindData, "|$P2N|Par2|$P2S|a stain|").Remove("$P2N");
    const std::size_t begin = FcsBuilder::DataBegin + builder.data.size();
    builder.Set("$BEGINSTEXT", std::to_string(begin));
    return builder.Set("$ENDSTEXT", std::to_string(begin + builder.behindData.size() - 1));
}

/// A second and a third data set behind the first.
FcsBuilder WithThreeDataSets() {
    const std::string last = FcsBuilder::Small().Build();
    FcsBuilder builder = With("$NEXTDATA", std::to_string(last.size()));
    builder.behindData = builder.Build() + last;
    return builder;
}

/// A file with something irregular that can be read all the same.
struct Irregular {
    const char* name;
    FcsBuilder builder;
    const char* warning;  ///< part of the only warning; none expected when empty
    int events = 3;
};

std::vector<Irregular> Irregularities() {
    constexpr auto TextEnd = &FcsBuilder::textEnd;
    FcsBuilder nowhere = WithHeader(2, "       0");
    nowhere.header[3] = "       0";
    FcsBuilder eightNines = WithHeader(2, "99999999");
    eightNines.header[3] = "99999999";
    return {
        {"places only in TEXT", nowhere, ""},
        {"places only in HEADER", WithHeader(2, "", false), ""},
        {"eight nines", eightNines, ""},
        {"end of eight nines", WithHeader(3, "99999999"), ""},
        {"blank places", WithHeader(4, "        "), ""},
        {"wrong begin in HEADER", WithHeader(2, "    1000"), "DATA is read where TEXT says"},
        {"begin of DATA inside TEXT", WithHeader(2, "      60"), "DATA is read where TEXT says"},
        {"unreadable begin", WithHeader(2, "    -100"), "\"    -100\""},
        {"wrong end", WithHeader(3, "99999998", false), "expected a byte from 4096 to 4119"},
        {"end before begin", WithHeader(3, "    1000", false), "HEADER end of DATA is \"1000\""},
        {"end one byte short", WithHeader(3, "    4118", false), "expected 4119"},
        {"end inside an event", WithHeader(3, "    4116", false), "expected 4119"},
        {"$TOT too large", With("$TOT", "4"), "$TOT is \"4\", expected 3"},
        {"huge $TOT", With("$TOT", "18446744073709551615"), "the first 3 events"},
        {"$TOT too small", With("$TOT", "2"), "the first 2 events", 2},
        {"no $TOT", Without("$TOT"), "$TOT is missing"},
        {"no $MODE", Without("$MODE"), "$MODE is missing"},
        {"no name", Without("$P2N"), "it is called P2"},
        {"same name", With("$P2N", "Par1"), "no other parameter has"},
        {"amplified floats", With("$P1E", "4,1"), "taken as linear"},
        {"gain 0", With("$P1G", "0"), "it is taken as 1"},
        {"padded numbers", With("$TOT", "  3   ").Set("$PAR", "0002"), ""},
        {"keywords in lower case", Without("$PAR").Set("$par", "2"), ""},
        {"supplemental TEXT", WithSupplementalText(), ""},
        {"supplemental TEXT nowhere", With("$BEGINSTEXT", "58").Set("$ENDSTEXT", "0"), "$BEGINSTEXT"},
        {"doubled delimiters", With("$P1S", "a//b////c"), ""},
        {"an empty value inside", With("$P2S", "").Set("X", "1"), "empty value"},
        {"an empty value at the end", With(TextEnd, "X//"), "empty value"},
        {"a keyword without value", With(TextEnd, "X/"), "expected a value"},
        {"no last delimiter", With(TextEnd, "X/Y"), "expected a delimiter"},
        {"padding behind TEXT", With(TextEnd, "  \r\n "), ""},
        {"two values of a keyword", With(TextEnd, "X/\xB5\x1b/X/7/"),
         "X is \"7\", expected one value, \"\u00B5\\x1b\"; the first is used"},
        {"matrix with an unknown name", With("$SPILLOVER", "2,Par1,Nobody,1,0,0,1"), "Nobody"},
        {"matrix too short", With("SPILL", "2,Par1,Par2,1,0,0"), "the matrix is left out"},
        {"three data sets", WithThreeDataSets(), "2 more follow"},
        {"next data set outside", With("$NEXTDATA", "1000000"), "there is none"},
        {"next data set in itself", With("$NEXTDATA", "1"), "there is none"},
    };
}

TEST_F(HostFcs, ReadsIrregularFilesAndSaysSo) {
    for (const Irregular& irregular : Irregularities()) {
        SCOPED_TRACE(irregular.name);
        const std::string path = Write(irregular.builder);
        const json file = Stats(path);
        EXPECT_EQ(file["events"], irregular.events);
        const json row = file["populations"][0]["statistics"][0];
        EXPECT_EQ(row["max"], irregular.events);
        EXPECT_EQ(row["min"], 1);
        const json& warnings = file["warnings"];
        const bool expected = *irregular.warning != '\0';
        ASSERT_EQ(warnings.size(), expected ? 1U : 0U) << warnings;
        if (!expected) continue;
        EXPECT_NE(warnings[0].get<std::string>().find(irregular.warning), std::string::npos) << warnings;
        ExpectRefused({"stats", path, "--strict"}, "a.fcs: ");
    }
}

/// A file that cannot be read, and the message without its beginning and the name of the file.
struct Damaged {
    FcsBuilder builder;
    const char* message;
};

FcsBuilder Integers(const std::string& keyword, const std::string& value) {
    return FcsBuilder('I', "1,2,3,4", {"16", "16"}, 1, "abcd").Set(keyword, value);
}

FcsBuilder Ascii(const Strings& widths, const std::string& data) {
    return {'A', "", widths, 1, data};
}

/// What a cut after any number of bytes would tear apart.
std::string LongText() {
    std::string text(58, 'a');
    while (text.size() < 300)
        text += "\u00B5";
    return text;
}

std::vector<Damaged> Damages() {
    return {
        {With(&FcsBuilder::version, "%PDF-1"),
         R"(HEADER version is "%PDF-1", expected FCS2.0, FCS3.0, FCS3.1 or FCS3.2)"},
        {WithHeader(0, "  x58   "), R"(HEADER begin of TEXT is "  x58   ", expected a byte offset)"},
        {WithHeader(0, "      10"), R"(HEADER begin of TEXT is "10", expected a byte from 58 to 4119)"},
        {WithHeader(1, "    9999"), R"(HEADER end of TEXT is "9999", expected a byte from 59 to 4119)"},
        {WithHeader(1, "      20"), R"(HEADER end of TEXT is "20", expected a byte from 59 to 4119)"},
        {With(&FcsBuilder::delimiter, 'P'),
         R"(TEXT delimiter is "P", expected a character that no keyword begins with)"},
        {WithHeader(2, "      60", false),
         R"(HEADER begin of DATA is "60", expected a byte outside HEADER and TEXT)"},
        {WithHeader(2, "       0", false), R"(HEADER begin of DATA is "0", expected the place of DATA)"},
        {WithHeader(2, "   50000", false), R"(HEADER begin of DATA is "50000", expected a byte of the file)"},
        {With("$BEGINDATA", "abc"), R"($BEGINDATA is "abc", expected a whole number)"},
        {Without("$PAR"), "$PAR is missing, expected the number of parameters"},
        {With("$PAR", "0"), R"($PAR is "0", expected a number of parameters)"},
        {With("$PAR", "4000000000"), R"($PAR is "4000000000", expected a number of parameters that TEXT)"},
        {With("$PAR", "3"), "$P3B is missing, expected 32 bits"},
        {With("$PAR", "\x1b[31m"), R"($PAR is "\x1b[31m", expected)"},
        {With("$TOT", "3e0"), R"($TOT is "3e0", expected a whole number)"},
        {With("$MODE", "C"), R"($MODE is "C", expected L, list mode)"},
        {With("$MODE", LongText()), "aaa\u00B5\u00B5...\", expected L"},
        {With("$DATATYPE", "X"), R"($DATATYPE is "X", expected I, F, D or A)"},
        {With("$P2DATATYPE", "I"), R"($P2DATATYPE is "I", expected F as in $DATATYPE)"},
        {Without("$BYTEORD"), "$BYTEORD is missing, expected an order of bytes"},
        {With("$BYTEORD", "1,1,2,3"), R"($BYTEORD is "1,1,2,3", expected the numbers from 1 on)"},
        {With("$BYTEORD", "1,3,2"), R"($BYTEORD is "1,3,2", expected the order of 4 bytes)"},
        {With("$P1B", "16"), R"($P1B is "16", expected 32 bits)"},
        {Integers("$P2B", "4294967312"), R"($P2B is "4294967312", expected 8, 16, 24 or 32 bits)"},
        {Integers("$P1B", "10"), R"($P1B is "10", expected 8, 16, 24 or 32 bits)"},
        {Integers("$P1R", "-5"), R"($P1R is "-5", expected a number of at least 0)"},
        {Integers("$P1R", "1024 channels"), R"($P1R is "1024 channels", expected a number)"},
        {Integers("$P1E", "4"), R"($P1E is "4", expected two numbers of at least 0, such as 0,0 or 4,1)"},
        {Integers("$P1E", "4,1").Set("$P1R", "0"), R"($P1E is "4,1", expected 0,0 where the range is 0)"},
        {With("$P2G", "inf"), R"($P2G is "inf", expected a number above 0)"},
        {Ascii({"4", "4"}, "004200x7"),
         R"(DATA value of parameter 2 in event 1 is "00x7", expected a whole number)"},
        {Ascii({"*", "*"}, "1 2147483648"), R"(is "2147483648", expected a whole number up to 2147483647)"},
        {Ascii({"2", "2"}, "12  "), R"(parameter 2 in event 1 is "  ", expected a whole number)"},
        {Ascii({"2", "*"}, "1234"), R"($P2B is "*", expected a number of characters)"},
    };
}

TEST_F(HostFcs, RefusesWhatItCannotReadAndSaysWhy) {
    for (const Damaged& damaged : Damages())
        ExpectRefused({"stats", Write(damaged.builder)}, damaged.message);
}

}  // namespace
}  // namespace Orvane::Testing
