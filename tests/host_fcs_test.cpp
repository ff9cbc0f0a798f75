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

using nlohmann::json;
using Strings = std::vector<std::string>;

class HostFcs : public HostTest {};

/// Three events determine their minimum, median and maximum, and these determine the events but for their
/// order.
void ExpectValues(const json& file, std::size_t parameter, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const json row = Row(file, "Par" + std::to_string(parameter + 1));
    ASSERT_TRUE(row.is_object());
    EXPECT_EQ(row["min"].get<float>(), static_cast<float>(values[0]));
    EXPECT_EQ(row["median"].get<float>(), static_cast<float>(values[1]));
    EXPECT_EQ(row["max"].get<float>(), static_cast<float>(values[2]));
}

/// The digits of a $BYTEORD that concern a word of `bytes` bytes.
std::string OrderOf(const std::string& byteOrder, unsigned bytes) {
    std::string order;
    for (const char c : byteOrder) {
        if (c != ',' && c <= static_cast<char>('0' + bytes)) order += c;
    }
    return order;
}

/// All orders of the digits, separated by commas.
Strings Permutations(std::string digits) {
    Strings orders;
    do {
        orders.emplace_back();
        for (const char digit : digits) {
            if (!orders.back().empty()) orders.back() += ',';
            orders.back() += digit;
        }
    } while (std::next_permutation(digits.begin(), digits.end()));
    return orders;
}

TEST_F(HostFcs, ReadsIntegersOfEveryWidthMixAndByteOrder) {
    const std::vector<std::vector<unsigned>> mixes = {{32, 32},  {16, 16}, {24},
                                                      {8, 8, 8}, {16, 32}, {8, 16, 24, 32}};
    Strings command = {"stats", "--format", "json", "--values", "channel"};
    std::vector<std::vector<std::vector<double>>> expected;
    std::mt19937 random(7);
    for (const auto& mix : mixes) {
        for (const std::string& order : Permutations("1234")) {
            Strings widths;
            for (const unsigned width : mix)
                widths.push_back(std::to_string(width));
            FcsBuilder builder('I', order, widths, 3);
            std::vector<std::vector<double>> columns(mix.size());
            for (int event = 0; event < 3; ++event) {
                for (std::size_t p = 0; p < mix.size(); ++p) {
                    const std::uint64_t value = random() & ((std::uint64_t{1} << mix[p]) - 1);
                    builder.data += EncodeWord(value, OrderOf(order, mix[p] / 8));
                    columns[p].push_back(static_cast<double>(value));
                }
            }
            command.push_back(Write(builder, std::to_string(command.size()) + ".fcs"));
            expected.push_back(columns);
        }
    }
    const HostRun run = Run(command);
    ASSERT_EQ(run.status, 0) << run.err;
    const json files = run.Json()["files"];
    ASSERT_EQ(files.size(), expected.size());
    for (std::size_t f = 0; f < expected.size(); ++f) {
        EXPECT_TRUE(files[f]["warnings"].empty());
        for (std::size_t p = 0; p < expected[f].size(); ++p)
            ExpectValues(files[f], p, expected[f][p]);
    }
}

TEST_F(HostFcs, ReadsFloatsAndDoublesInTheirByteOrders) {
    const std::vector<double> values = {-1.5, 3.25e5, 1.0 / 3};
    for (const std::string& order : Permutations("1234")) {
        FcsBuilder builder('F', order, {"32"}, 3);
        for (const double value : values)
            builder.data += EncodeFloat(static_cast<float>(value), OrderOf(order, 4));
        ExpectValues(Stats(Write(builder)), 0, values);
    }
    for (const auto& [order, digits] :
         {std::pair("1,2,3,4", "12345678"), std::pair("8,7,6,5,4,3,2,1", "87654321")}) {
        FcsBuilder builder('D', order, {"64"}, 3);
        for (const double value : values)
            builder.data += EncodeDouble(value, digits);
        ExpectValues(Stats(Write(builder)), 0, values);
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
        FcsBuilder builder('A', "", widths, 3);
        builder.data = data;
        const json file = Stats(Write(builder));
        ExpectValues(file, 0, {42, 43, 44});
        ExpectValues(file, 1, {7, 8, 9});
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
    const std::string path = Write(builder);
    const json scale = Stats(path);
    ExpectValues(scale, 0, {1023, 256, 512});
    ExpectValues(scale, 1, {std::pow(10.0, 4.0 * 1023 / 1024), 10, 100});
    ExpectValues(scale, 2, {127.875, 32, 64});
    ASSERT_EQ(scale["warnings"].size(), 1U);
    EXPECT_NE(scale["warnings"][0].get<std::string>().find("taken as 4,1"), std::string::npos);
    const json channel = Stats(path, {"--values", "channel"});
    for (std::size_t p = 0; p < 3; ++p)
        ExpectValues(channel, p, {1023, 256, 512});

    FcsBuilder floats = FcsBuilder::Small().Set("$P1G", "0.1");
    ExpectValues(Stats(Write(floats)), 0, {10, 20, 30});
    ExpectValues(Stats(Write(floats), {"--values", "channel"}), 0, {1, 2, 3});
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
    ExpectValues(Stats(path), 0, {1, 2, 3});
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

/// A file with something irregular that can be read all the same.
struct Irregular {
    const char* name;
    FcsBuilder builder;
    const char* warning;  ///< part of the only warning; none expected when empty
    int events = 3;
};

FcsBuilder With(const std::string& keyword, const std::string& value) {
    return FcsBuilder::Small().Set(keyword, value);
}

FcsBuilder Without(const std::string& keyword) {
    return FcsBuilder::Small().Remove(keyword);
}

template <class Change>
FcsBuilder Changed(const Change& change) {
    FcsBuilder builder = FcsBuilder::Small();
    change(builder);
    return builder;
}

FcsBuilder WithHeader(std::size_t index, const std::string& field, bool placesInText = true) {
    FcsBuilder builder = FcsBuilder::Small();
    builder.header[index] = field;
    builder.placesInText = placesInText;
    return builder;
}

FcsBuilder WithSupplementalText() {
    FcsBuilder builder = FcsBuilder::Small().Remove("$P2N");
    builder.behindData = "|$P2N|Par2|$P2S|a stain|";
    const std::size_t begin = FcsBuilder::DataBegin + builder.data.size();
    builder.Set("$BEGINSTEXT", std::to_string(begin));
    return builder.Set("$ENDSTEXT", std::to_string(begin + builder.behindData.size() - 1));
}

/// A second and a third data set behind the first.
FcsBuilder WithThreeDataSets() {
    FcsBuilder builder = FcsBuilder::Small();
    const FcsBuilder last = builder;
    builder.Set("$NEXTDATA", std::to_string(last.Build().size()));
    builder.behindData = builder.Build() + last.Build();
    return builder;
}

std::vector<Irregular> Irregularities() {
    const std::string nines = "99999999";
    FcsBuilder nowhere = WithHeader(2, "       0");
    nowhere.header[3] = "       0";
    FcsBuilder eightNines = WithHeader(2, nines);
    eightNines.header[3] = nines;
    return {
        {"places only in TEXT", nowhere, ""},
        {"places only in HEADER", WithHeader(2, "", false), ""},
        {"eight nines", eightNines, ""},
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
        {"an empty value at the end", Changed([](auto& b) { b.textEnd = "X//"; }), "empty value"},
        {"a keyword without value", Changed([](auto& b) { b.textEnd = "X/"; }), "expected a value"},
        {"no last delimiter", Changed([](auto& b) { b.textEnd = "X/Y"; }), "expected a delimiter"},
        {"padding behind TEXT", Changed([](auto& b) { b.textEnd = "  \r\n "; }), ""},
        {"two values of a keyword", Changed([](auto& b) { b.textEnd = "X/\xB5\x1b/X/7/"; }),
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
        if (!file.is_object()) continue;
        EXPECT_EQ(file["events"], irregular.events);
        const json row = file["populations"][0]["statistics"][0];
        EXPECT_EQ(row["max"], irregular.events);
        EXPECT_EQ(row["min"], 1);
        const json& warnings = file["warnings"];
        const bool expected = *irregular.warning != '\0';
        ASSERT_EQ(warnings.size(), expected ? 1U : 0U) << warnings;
        if (!expected) continue;
        EXPECT_NE(warnings[0].get<std::string>().find(irregular.warning), std::string::npos) << warnings;
        const HostRun strict = Run({"stats", path, "--strict"});
        EXPECT_EQ(strict.status, 1);
        EXPECT_NE(strict.err.find("a.fcs: "), std::string::npos) << strict.err;
        EXPECT_EQ(strict.out, "");
    }
}

/// A file that cannot be read, and the message without its beginning and the name of the file.
struct Damaged {
    FcsBuilder builder;
    const char* message;
};

FcsBuilder Integers(const std::string& keyword, const std::string& value) {
    FcsBuilder builder('I', "1,2,3,4", {"16", "16"}, 1);
    builder.data = "abcd";
    return builder.Set(keyword, value);
}

FcsBuilder Ascii(const Strings& widths, const std::string& data) {
    FcsBuilder builder('A', "", widths, 1);
    builder.data = data;
    return builder;
}

FcsBuilder DataOnlyInHeader(const std::string& begin) {
    return WithHeader(2, begin, false);
}

/// What a cut after any number of bytes would tear apart.
std::string LongText() {
    std::string text(58, 'a');
    while (text.size() < 300)
        text += "\u00B5";
    return text;
}

std::vector<Damaged> Damages() {
    const auto pdf = [](FcsBuilder& builder) { builder.version = "%PDF-1"; };
    const auto letter = [](FcsBuilder& builder) { builder.delimiter = 'P'; };
    return {
        {Changed(pdf), R"(HEADER version is "%PDF-1", expected FCS2.0, FCS3.0, FCS3.1 or FCS3.2)"},
        {WithHeader(0, "  x58   "), R"(HEADER begin of TEXT is "  x58   ", expected a byte offset)"},
        {WithHeader(0, "      10"), R"(HEADER begin of TEXT is "10", expected a byte from 58 to 4119)"},
        {WithHeader(1, "    9999"), R"(HEADER end of TEXT is "9999", expected a byte from 59 to 4119)"},
        {WithHeader(1, "      20"), R"(HEADER end of TEXT is "20", expected a byte from 59 to 4119)"},
        {Changed(letter), R"(TEXT delimiter is "P", expected a character that no keyword begins with)"},
        {DataOnlyInHeader("      60"),
         R"(HEADER begin of DATA is "60", expected a byte outside HEADER and TEXT)"},
        {DataOnlyInHeader("       0"), R"(HEADER begin of DATA is "0", expected the place of DATA)"},
        {DataOnlyInHeader("   50000"), R"(HEADER begin of DATA is "50000", expected a byte of the file)"},
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
    for (const Damaged& damaged : Damages()) {
        const std::string path = Write(damaged.builder);
        const HostRun run = Run({"stats", path});
        EXPECT_EQ(run.status, 1) << damaged.message;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("orvane: " + path + ": ", 0), 0U) << run.err;
        EXPECT_NE(run.err.find(damaged.message), std::string::npos) << run.err;
    }
}

/// Whatever happens to a file, the program ends by itself and with a message, or with events it has.
TEST_F(HostFcs, SurvivesTruncationAndRandomDamage) {
    const std::string good = WithSupplementalText().Set("$P1G", "2").Build();
    Strings command = {"stats", "--format", "json"};
    std::size_t files = 0;
    const auto add = [&](const std::string& bytes) {
        const std::string path = Path(std::to_string(files++) + ".fcs");
        std::ofstream(path, std::ios::binary) << bytes;
        command.push_back(path);
    };
    for (std::size_t size = 0; size < good.size(); size += size < 400 ? 5 : 97)
        add(good.substr(0, size));
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        std::string bytes = good;
        for (unsigned k = 0; k < 1 + random() % 4; ++k) {
            bytes[random() % (random() % 2 == 0 ? 58 : 400)] = static_cast<char>(random());
        }
        add(bytes);
    }
    const HostRun run = Run(command);
    EXPECT_EQ(run.status, 1);
    const auto refused = static_cast<std::size_t>(std::count(run.err.begin(), run.err.end(), '\n'));
    EXPECT_EQ(run.Json()["files"].size() + refused, files);
}

}  // namespace
}  // namespace Orvane::Testing
