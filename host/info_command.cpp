#include "info_command.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

#include "display.h"
#include "fcs_file.h"
#include "numbers.h"
#include "parallel.h"
#include "table.h"

namespace Host {
namespace {

using Json = nlohmann::ordered_json;

struct Description {
    FcsFile file;
    std::vector<std::string> warnings;
};

Description Describe(const std::string& path, bool strict) {
    Findings findings(strict);
    FcsFile file = OpenFcsFile(path, findings);
    return {std::move(file), findings.Warnings()};
}

const char* SourceName(const DataSegment& data) {
    return data.source == DataSegment::Source::Header ? "HEADER" : "TEXT";
}

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

void PrintSpillover(std::ostream& out, const FcsFile& file) {
    if (!file.spillover) return;
    const std::string size = std::to_string(file.spillover->names.size());
    out << "spill-over   " << file.spillover->keyword << ", " << size << " x " << size << ":";
    for (const std::string& name : file.spillover->names) {
        out << (&name == &file.spillover->names.front() ? " " : ", ") << Printable(name);
    }
    out << '\n';
}

void PrintParameters(std::ostream& out, const EventLayout& layout) {
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
    table.Print(out);
}

void Print(std::ostream& out, const std::string& path, const Description& description) {
    const FcsFile& file = description.file;
    const DataSegment& data = file.data;
    out << Printable(path) << '\n'
        << "version      " << file.header.version << '\n'
        << "HEADER       TEXT " << Place(file.header.text) << ", DATA " << Place(file.header.data)
        << ", ANALYSIS " << Place(file.header.analysis) << '\n'
        << "TEXT         DATA " << Place(data.text) << '\n'
        << "DATA         " << LastByte(data) << ", as " << SourceName(data) << " says\n"
        << "data type    " << TypeName(file.layout) << '\n';
    if (file.layout.byteOrder) out << "byte order   " << Printable(file.layout.byteOrder->Text()) << '\n';
    out << "events       " << data.events << '\n' << "parameters   " << file.layout.parameters.size() << '\n';
    PrintSpillover(out, file);
    PrintParameters(out, file.layout);
    for (const std::string& warning : description.warnings)
        out << "warning: " << warning << '\n';
}

Json ToJson(const Offsets& offsets) {
    return {offsets.begin, offsets.end};
}

Json OrNull(const std::optional<double>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json ToJson(const Parameter& parameter) {
    return {{"name", ToUtf8(parameter.name)},
            {"stain", ToUtf8(parameter.stain)},
            {"bits", parameter.width == 0 ? Json("*") : Json(parameter.width)},
            {"range", OrNull(parameter.range)},
            {"amplification", Json::array({parameter.decades, parameter.logOffset})},
            {"gain", OrNull(parameter.gain)}};
}

Json ToJson(const std::optional<Spillover>& spillover) {
    if (!spillover) return nullptr;
    Json names = Json::array();
    Json matrix = Json::array();
    for (std::size_t row = 0; row < spillover->names.size(); ++row) {
        names.push_back(ToUtf8(spillover->names[row]));
        matrix.push_back(Json::array());
        for (std::size_t column = 0; column < spillover->names.size(); ++column) {
            matrix.back().push_back(spillover->At(row, column));
        }
    }
    return {{"keyword", spillover->keyword}, {"names", std::move(names)}, {"matrix", std::move(matrix)}};
}

Json ToJson(const std::string& path, const Description& description) {
    const FcsFile& file = description.file;
    Json parameters = Json::array();
    for (const Parameter& parameter : file.layout.parameters)
        parameters.push_back(ToJson(parameter));
    return {
        {"file", ToUtf8(path)},
        {"version", file.header.version},
        {"header",
         {{"text", ToJson(file.header.text)},
          {"data", ToJson(file.header.data)},
          {"analysis", ToJson(file.header.analysis)}}},
        {"text", {{"data", ToJson(file.data.text)}}},
        {"data", {{"begin", file.data.begin}, {"length", file.data.length}, {"from", SourceName(file.data)}}},
        {"datatype", std::string(1, static_cast<char>(file.layout.type))},
        {"byteord", file.layout.byteOrder ? Json(file.layout.byteOrder->Text()) : Json(nullptr)},
        {"events", file.data.events},
        {"spillover", ToJson(file.spillover)},
        {"parameters", std::move(parameters)},
        {"warnings", description.warnings}};
}

std::string FormatInfo(const std::vector<std::string>& paths, const std::vector<Outcome<Description>>& files,
                       Format format) {
    std::ostringstream out;
    Json list = Json::array();
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!files[i].result) continue;
        if (format == Format::Json) {
            list.push_back(ToJson(paths[i], *files[i].result));
        } else {
            if (out.tellp() > 0) out << '\n';
            Print(out, paths[i], *files[i].result);
        }
    }
    if (format == Format::Json) out << Json{{"files", std::move(list)}}.dump(2) << '\n';
    return out.str();
}

}  // namespace

int RunInfo(const InfoOptions& options) {
    const auto files = Collect<Description>(
        options.files.size(), 1, [&](std::size_t i) { return Describe(options.files[i], options.strict); });
    const int status = PrintRefusals(options.files, files);
    const bool any =
        std::any_of(files.begin(), files.end(), [](const auto& file) { return file.result.has_value(); });
    if (any) WriteResult(FormatInfo(options.files, files, options.format), "");
    return status;
}

}  // namespace Host
