#include "commands/info_command.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

#include "fcs_files/file_description.h"
#include "fcs_files/opened_files.h"
#include "text/display.h"

namespace Host {
namespace {

using Json = nlohmann::ordered_json;

void Print(std::ostream& out, const std::string& path, const OpenedFile& opened) {
    constexpr std::size_t NameWidth = 13;
    out << Printable(path) << '\n';
    for (const Property& property : DescribeFile(opened.file)) {
        out << property.name << std::string(NameWidth - property.name.size(), ' ') << property.value << '\n';
    }
    TabulateParameters(opened.file.layout).Print(out);
    for (const std::string& warning : opened.findings.Warnings())
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

Json ToJson(const std::string& path, const OpenedFile& opened) {
    const FcsFile& file = opened.file;
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
        {"warnings", opened.findings.Warnings()}};
}

std::string FormatInfo(const std::vector<std::string>& paths, const std::vector<Outcome<OpenedFile>>& files,
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
    const auto files = OpenAll(options.files, 1, options.strict);
    const int status = PrintRefusals(options.files, files);
    const bool any =
        std::any_of(files.begin(), files.end(), [](const auto& file) { return file.result.has_value(); });
    if (any) WriteResult(FormatInfo(options.files, files, options.format), "");
    return status;
}

}  // namespace Host
