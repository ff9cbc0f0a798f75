#include "fcs_files/fcs_header.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "text/numbers.h"

namespace Host {
namespace {

constexpr std::size_t FirstOffset = 10;
constexpr std::size_t OffsetWidth = 8;
constexpr const char* OffsetExpected = "a byte offset of up to eight digits";

struct Field {
    std::string name;
    std::string_view text;
};

Field OffsetField(std::string_view header, std::size_t index) {
    static constexpr std::array<const char*, 6> Names = {"begin of TEXT",     "end of TEXT",
                                                         "begin of DATA",     "end of DATA",
                                                         "begin of ANALYSIS", "end of ANALYSIS"};
    return {std::string("HEADER ") + Names[index],
            header.substr(FirstOffset + index * OffsetWidth, OffsetWidth)};
}

std::uint64_t RequiredOffset(const Field& field) {
    const auto offset = ParseUnsigned(field.text);
    if (!offset) Refuse(field.name, field.text, OffsetExpected);
    return *offset;
}

/// Blank means 0, as writers of old versions leave the fields of absent segments.
std::uint64_t OptionalOffset(const Field& field, Findings& findings) {
    if (Trim(field.text).empty()) return 0;
    const auto offset = ParseUnsigned(field.text);
    if (!offset) findings.Warn({field.name, std::string(field.text), OffsetExpected}, "it is taken as 0");
    return offset.value_or(0);
}

void CheckVersion(std::string_view version) {
    static constexpr std::array<std::string_view, 4> Known = {"FCS2.0", "FCS3.0", "FCS3.1", "FCS3.2"};
    if (std::find(Known.begin(), Known.end(), version) == Known.end()) {
        Refuse("HEADER version", version, "FCS2.0, FCS3.0, FCS3.1 or FCS3.2");
    }
}

void CheckTextInFile(const Header& header, std::uint64_t available) {
    if (header.text.begin < Header::Size || header.text.begin >= available) {
        Refuse("HEADER begin of TEXT", std::to_string(header.text.begin),
               "a byte from " + std::to_string(Header::Size) + " to " + std::to_string(available - 1));
    }
    if (header.text.end <= header.text.begin || header.text.end >= available) {
        Refuse(
            "HEADER end of TEXT", std::to_string(header.text.end),
            "a byte from " + std::to_string(header.text.begin + 1) + " to " + std::to_string(available - 1));
    }
}

}  // namespace

Header ReadHeader(InputFile& file, std::uint64_t start, Findings& findings) {
    const std::uint64_t available = file.Size() > start ? file.Size() - start : 0;
    const std::string bytes = file.ReadText(std::min(start, file.Size()), std::min(available, Header::Size));
    CheckVersion(std::string_view(bytes).substr(0, 6));
    if (bytes.size() < Header::Size) {
        Refuse("HEADER", std::to_string(bytes.size()) + " bytes", "58 bytes");
    }
    Header header;
    header.version = bytes.substr(0, 6);
    header.text = {RequiredOffset(OffsetField(bytes, 0)), RequiredOffset(OffsetField(bytes, 1))};
    header.data = {OptionalOffset(OffsetField(bytes, 2), findings),
                   OptionalOffset(OffsetField(bytes, 3), findings)};
    header.analysis = {OptionalOffset(OffsetField(bytes, 4), findings),
                       OptionalOffset(OffsetField(bytes, 5), findings)};
    CheckTextInFile(header, available);
    return header;
}

std::string ToText(const Offsets& offsets) {
    return std::to_string(offsets.begin) + ".." + std::to_string(offsets.end);
}

}  // namespace Host
