#include "fcs_files/file_description.h"

#include <array>

#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

const char* TypeName(const EventLayout& layout) {
    switch (layout.type) {
        case DataType::Integer:
            return "I, integers";
        case DataType::Float:
            return "F, 32-bit floating point";
        case DataType::Double:
            return "D, 64-bit floating point";
        default:
            return layout.freeFormat ? "A, ASCII in free format" : "A, ASCII";
    }
}

std::string OrDash(const std::optional<double>& value) {
    return value ? Shortest(*value) : "-";
}

std::string LastByte(const DataSegment& data) {
    return data.length == 0 ? "nothing" : ToText({data.begin, data.begin + data.length - 1});
}

/// Where a segment is, as it stands in the file.
std::string Place(const Offsets& offsets) {
    return offsets == Offsets{} ? "nowhere" : ToText(offsets);
}

std::string ListChannels(const Spillover& spillover) {
    const std::string size = std::to_string(spillover.names.size());
    std::string text = spillover.keyword + ", " + size + " x " + size + ":";
    for (const std::string& name : spillover.names)
        text += (&name == &spillover.names.front() ? " " : ", ") + Printable(name);
    return text;
}

/// Keywords about the acquisition that people look for.
struct NamedKeyword {
    const char* keyword;
    const char* name;
};

constexpr std::array<NamedKeyword, 12> AcquisitionKeywords{{
    {"$DATE", "date"},
    {"$BTIM", "begin"},
    {"$ETIM", "end"},
    {"$CYT", "cytometer"},
    {"$CYTSN", "serial number"},
    {"$INST", "institution"},
    {"$PROJ", "project"},
    {"$EXP", "experimenter"},
    {"$OP", "operator"},
    {"$SRC", "specimen"},
    {"$CELLS", "cells"},
    {"$COM", "comment"},
}};

}  // namespace

std::vector<Property> DescribeFile(const FcsFile& file) {
    const DataSegment& data = file.data;
    std::vector<Property> list{
        {"version", file.header.version},
        {"HEADER", "TEXT " + Place(file.header.text) + ", DATA " + Place(file.header.data) + ", ANALYSIS " +
                       Place(file.header.analysis)},
        {"TEXT", "DATA " + Place(data.text)},
        {"DATA", LastByte(data) + ", as " + SourceName(data) + " says"},
        {"data type", TypeName(file.layout)}};
    if (file.layout.byteOrder) list.push_back({"byte order", Printable(file.layout.byteOrder->Text())});
    list.push_back({"events", std::to_string(data.events)});
    list.push_back({"parameters", std::to_string(file.layout.parameters.size())});
    if (file.spillover) list.push_back({"spill-over", ListChannels(*file.spillover)});
    return list;
}

std::vector<Property> DescribeAcquisition(const Keywords& keywords) {
    std::vector<Property> list;
    for (const auto& [keyword, name] : AcquisitionKeywords) {
        const std::string* value = keywords.Find(keyword);
        const std::string text = value == nullptr ? "" : Printable(Trim(*value));
        if (!text.empty()) list.push_back({name, text});
    }
    return list;
}

Table TabulateParameters(const EventLayout& layout) {
    using Align = Table::Align;
    Table table({{"n", Align::Right},
                 {"$PnN", Align::Left},
                 {"$PnS", Align::Left},
                 {layout.type == DataType::Ascii ? "characters" : "bits", Align::Right},
                 {"range", Align::Right},
                 {"amplification", Align::Left},
                 {"gain", Align::Right}});
    for (std::size_t p = 0; p < layout.parameters.size(); ++p) {
        const Parameter& parameter = layout.parameters[p];
        table.Add({std::to_string(p + 1), Printable(parameter.name), Printable(parameter.stain),
                   layout.freeFormat ? "*" : std::to_string(parameter.width), OrDash(parameter.range),
                   parameter.IsLog()
                       ? "log " + Shortest(parameter.decades) + "," + Shortest(parameter.logOffset)
                       : "linear",
                   OrDash(parameter.gain)});
    }
    return table;
}

const char* SourceName(const DataSegment& data) {
    return data.source == DataSegment::Source::Header ? "HEADER" : "TEXT";
}

}  // namespace Host
