#include "fcs_files/spillover_csv.h"

#include <cmath>
#include <utility>

#include "files/input_file.h"
#include "text/numbers.h"

namespace Host {
namespace {

using Row = std::vector<std::string>;

struct Line {
    std::size_t number;
    Row fields;
};

/// Fields may stand in quotes, in which a quote is doubled.
Row SplitFields(std::string_view line) {
    Row fields(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool twice = quoted && line.substr(i, 2) == "\"\"";
        if (line[i] == '"' && !twice) {
            quoted = !quoted;
        } else if (line[i] == ',' && !quoted) {
            fields.emplace_back();
        } else {
            fields.back() += line[i];
            if (twice) ++i;
        }
    }
    for (std::string& field : fields)
        field = Trim(field);
    return fields;
}

std::vector<Line> SplitLines(std::string_view text) {
    std::vector<Line> lines;
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    std::size_t number = 1;
    for (std::size_t begin = 0; begin < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        if (!Trim(line).empty()) lines.push_back({number, SplitFields(line)});
        begin = end + 1;
    }
    return lines;
}

/// One name more than lines of numbers could also be a line that is missing; the first field tells.
bool HasLabels(const std::vector<Line>& lines) {
    if (lines.size() < 2 || lines[0].fields.size() != lines.size()) return false;
    return lines[0].fields[0].empty() || !ParseNumber(lines[1].fields[0]);
}

void AppendNumbers(const std::string& path, const Line& line, std::size_t labels, std::size_t size,
                   std::vector<double>& numbers) {
    const std::string where = path + ", line " + std::to_string(line.number);
    if (line.fields.size() != size + labels) {
        Refuse(where, std::to_string(line.fields.size()) + " fields", std::to_string(size + labels));
    }
    for (std::size_t i = labels; i < line.fields.size(); ++i) {
        const std::optional<double> number = ParseNumber(line.fields[i]);
        if (!number) Refuse(where + ", field " + std::to_string(i + 1), line.fields[i], "a number");
        numbers.push_back(*number);
    }
}

}  // namespace

Spillover ReadSpilloverCsv(const std::string& path) {
    InputFile file(path);
    std::vector<Line> lines = SplitLines(file.ReadWhole());
    if (lines.empty()) RefuseMissing(path + ", line 1", "the names of channels");
    const std::size_t size = lines.size() - 1;
    Row& names = lines[0].fields;
    const std::size_t labels = HasLabels(lines) ? 1 : 0;
    if (size == 0 || names.size() != size + labels) {
        Refuse(path + ", the matrix",
               std::to_string(names.size()) + " names and " + std::to_string(size) + " lines of numbers",
               "as many of both");
    }
    Spillover matrix{path, {names.begin() + static_cast<std::ptrdiff_t>(labels), names.end()}, {}};
    for (std::size_t i = 1; i < lines.size(); ++i)
        AppendNumbers(path, lines[i], labels, size, matrix.coefficients);
    return matrix;
}

}  // namespace Host
