#include "fcs_files/fcs_writer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <string_view>

#include "fcs_files/fcs_text_writer.h"
#include "text/numbers.h"

namespace Host {
namespace {

std::string ParameterKeyword(std::size_t n, const char* name) {
    return "$P" + std::to_string(n) + name;
}

/// Whether `keyword` is $Pn with one of the letters that describe how values are stored.
bool DescribesValues(std::string_view keyword) {
    if (!keyword.starts_with("$P")) return false;
    keyword.remove_prefix(2);
    const std::size_t digits = keyword.find_first_not_of("0123456789");
    if (digits == 0 || digits == std::string_view::npos) return false;
    static constexpr std::array<std::string_view, 6> Names = {"B", "R", "E", "G", "N", "DATATYPE"};
    return std::find(Names.begin(), Names.end(), keyword.substr(digits)) != Names.end();
}

/// Whether the writer makes the keyword itself, or it says what is true of the older file only.
bool IsReplaced(const std::string& name) {
    static constexpr std::array<std::string_view, 14> Names = {
        "$BEGINANALYSIS", "$ENDANALYSIS", "$BEGINSTEXT",  "$ENDSTEXT", "$BEGINDATA",
        "$ENDDATA",       "$NEXTDATA",    "$BYTEORD",     "$DATATYPE", "$MODE",
        "$PAR",           "$TOT",         "$ORIGINALITY", "$UNICODE"};
    const std::string keyword = UpperCase(name);
    return DescribesValues(keyword) || std::find(Names.begin(), Names.end(), keyword) != Names.end();
}

std::string TypeLetter(const StoredFormat& format) {
    return format.IsInteger() ? "I" : format.type == StoredType::Float ? "F" : "D";
}

/// The version has no other orders, not even for doubles.
std::string ByteOrderOf(const StoredFormat& format) {
    return format.littleEndian ? "1,2,3,4" : "4,3,2,1";
}

/// Everything but the places of DATA.
std::vector<Keyword> ListKeywords(const std::vector<Keyword>& kept, const StoredFormat& format,
                                  const std::vector<StoredParameter>& parameters, std::uint64_t events) {
    std::vector<Keyword> list = {{"$BEGINANALYSIS", "0"},
                                 {"$ENDANALYSIS", "0"},
                                 {"$BEGINSTEXT", "0"},
                                 {"$ENDSTEXT", "0"},
                                 {"$NEXTDATA", "0"},
                                 {"$MODE", "L"},
                                 {"$DATATYPE", TypeLetter(format)},
                                 {"$BYTEORD", ByteOrderOf(format)},
                                 {"$PAR", std::to_string(parameters.size())},
                                 {"$TOT", std::to_string(events)}};
    for (std::size_t p = 0; p < parameters.size(); ++p) {
        const StoredParameter& parameter = parameters[p];
        list.push_back({ParameterKeyword(p + 1, "N"), parameter.name});
        list.push_back({ParameterKeyword(p + 1, "B"), std::to_string(format.Bits())});
        list.push_back({ParameterKeyword(p + 1, "R"), Shortest(parameter.range)});
        list.push_back({ParameterKeyword(p + 1, "E"),
                        Shortest(parameter.decades) + ',' + Shortest(parameter.logOffset)});
        if (parameter.gain) list.push_back({ParameterKeyword(p + 1, "G"), Shortest(*parameter.gain)});
    }
    for (const Keyword& keyword : kept) {
        if (!IsReplaced(keyword.name)) list.push_back(keyword);
    }
    return list;
}

/// TEXT with the places of DATA, which stands right behind it. They depend on its length and it on their
/// digits, of which there are only ever more.
std::string FormatTextBefore(std::vector<Keyword> keywords, std::uint64_t dataBytes, Offsets& data) {
    keywords.insert(keywords.begin(), {{"$BEGINDATA", "0"}, {"$ENDDATA", "0"}});
    std::string text = FormatText(keywords);
    while (dataBytes != 0 && data.begin != Header::Size + text.size()) {
        data = {Header::Size + text.size(), Header::Size + text.size() + dataBytes - 1};
        keywords[0].value = std::to_string(data.begin);
        keywords[1].value = std::to_string(data.end);
        text = FormatText(keywords);
    }
    return text;
}

/// Places of more than eight digits stand in TEXT only.
std::string FormatHeader(std::uint64_t textBytes, const Offsets& data) {
    const Offsets text{Header::Size, Header::Size + textBytes - 1};
    if (text.end > Header::EightNines) {
        Refuse("TEXT", std::to_string(textBytes) + " bytes",
               "an end of at most " + std::to_string(Header::EightNines));
    }
    const Offsets shown = data.end > Header::EightNines ? Offsets{} : data;
    std::string header = "FCS3.1    ";
    for (const std::uint64_t offset :
         {text.begin, text.end, shown.begin, shown.end, std::uint64_t{0}, std::uint64_t{0}}) {
        const std::string digits = std::to_string(offset);
        header.append(8 - digits.size(), ' ').append(digits);
    }
    return header;
}

}  // namespace

FcsWriter::FcsWriter(OutputFile& file, const std::vector<Keyword>& keywords, const StoredFormat& format,
                     const std::vector<StoredParameter>& parameters, std::uint64_t events)
    : file_(file), data_(format, parameters) {
    Offsets data;
    const std::string text = FormatTextBefore(ListKeywords(keywords, format, parameters, events),
                                              events * data_.EventBytes(), data);
    const std::string start = FormatHeader(text.size(), data) + text;
    file_.Write(start.data(), start.size());
}

void FcsWriter::Finish() {
    constexpr std::string_view NoChecksum = "00000000";
    file_.Write(NoChecksum.data(), NoChecksum.size());
}

}  // namespace Host
