#include "stats_report.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <sstream>
#include <utility>

#include "display.h"
#include "numbers.h"
#include "table.h"

namespace Host {
namespace {

/// Floating-point numbers are floats here, so that they are written with a float's digits; keys keep their
/// order.
using FloatJson = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                       std::uint64_t, float>;

/// Every statistic with its key, in the order of all three forms.
struct NamedStatistic {
    const char* key;
    const char* title;
    std::optional<float> ParameterStatistics::*value;
    bool isRatio;
};

constexpr std::array<NamedStatistic, 8> Statistics{{
    {"min", "min", &ParameterStatistics::min, false},
    {"max", "max", &ParameterStatistics::max, false},
    {"mean", "mean", &ParameterStatistics::mean, false},
    {"median", "median", &ParameterStatistics::median, false},
    {"sd", "SD", &ParameterStatistics::sd, false},
    {"cv", "CV %", &ParameterStatistics::cv, true},
    {"rsd", "robust SD", &ParameterStatistics::rsd, false},
    {"rcv", "robust CV %", &ParameterStatistics::rcv, true},
}};

std::optional<float> Finite(float value) {
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

FloatJson OrNull(const std::optional<float>& value) {
    return value ? FloatJson(*value) : FloatJson(nullptr);
}

FloatJson ToJson(const Population& population) {
    FloatJson statistics = FloatJson::array();
    for (const ParameterStatistics& row : population.statistics) {
        FloatJson entry{{"parameter", ToUtf8(row.parameter)}, {"count", row.count}};
        for (const NamedStatistic& statistic : Statistics)
            entry[statistic.key] = OrNull(row.*statistic.value);
        statistics.push_back(std::move(entry));
    }
    return {{"name", population.name},
            {"parent", population.parent ? FloatJson(*population.parent) : FloatJson(nullptr)},
            {"count", population.count},
            {"percent_of_parent", OrNull(population.percentOfParent)},
            {"percent_of_total", OrNull(population.percentOfTotal)},
            {"statistics", std::move(statistics)}};
}

std::string FormatJson(const std::vector<FileStatistics>& files) {
    FloatJson list = FloatJson::array();
    for (const FileStatistics& file : files) {
        FloatJson populations = FloatJson::array();
        for (const Population& population : file.populations)
            populations.push_back(ToJson(population));
        list.push_back({{"file", ToUtf8(file.file)},
                        {"version", file.version},
                        {"events", file.events},
                        {"warnings", file.warnings},
                        {"populations", std::move(populations)}});
    }
    return FloatJson{{"files", std::move(list)}}.dump(2) + '\n';
}

/// Quoted where the comma-separated form needs it.
std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string CsvNumber(const std::optional<float>& value) {
    return value ? Shortest(*value) : std::string();
}

std::string Joined(const std::vector<std::string>& warnings) {
    std::string text;
    for (const std::string& warning : warnings)
        text += (text.empty() ? "" : " | ") + warning;
    return text;
}

void AppendCsvRow(std::string& text, const FileStatistics& file, const Population& population,
                  const ParameterStatistics& row) {
    text += CsvField(ToUtf8(file.file)) + ',' + file.version + ',' + std::to_string(file.events) + ',' +
            CsvField(Joined(file.warnings)) + ',' + CsvField(population.name) + ',' +
            CsvField(population.parent.value_or("")) + ',' + std::to_string(population.count) + ',' +
            CsvNumber(population.percentOfParent) + ',' + CsvNumber(population.percentOfTotal) + ',' +
            CsvField(ToUtf8(row.parameter)) + ',' + std::to_string(row.count);
    for (const NamedStatistic& statistic : Statistics)
        text += ',' + CsvNumber(row.*statistic.value);
    text += '\n';
}

std::string FormatCsv(const std::vector<FileStatistics>& files) {
    std::string text =
        "file,version,events,warnings,population,parent,population_count,percent_of_parent,percent_of_total,"
        "parameter,count";
    for (const NamedStatistic& statistic : Statistics)
        text += std::string(",") + statistic.key;
    text += '\n';
    for (const FileStatistics& file : files) {
        for (const Population& population : file.populations) {
            for (const ParameterStatistics& row : population.statistics)
                AppendCsvRow(text, file, population, row);
        }
    }
    return text;
}

std::string TableNumber(const ParameterStatistics& row, const NamedStatistic& statistic) {
    const std::optional<float> value = row.*statistic.value;
    if (!value) return "-";
    return Rounded(statistic.isRatio ? 100.0 * *value : *value);
}

void PrintPopulation(std::ostream& out, const Population& population) {
    std::vector<Table::Column> columns{{population.name, Table::Align::Left}, {"count", Table::Align::Right}};
    for (const NamedStatistic& statistic : Statistics)
        columns.push_back({statistic.title, Table::Align::Right});
    Table table(std::move(columns));
    for (const ParameterStatistics& row : population.statistics) {
        std::vector<std::string> cells{Printable(row.parameter), std::to_string(row.count)};
        for (const NamedStatistic& statistic : Statistics)
            cells.push_back(TableNumber(row, statistic));
        table.Add(std::move(cells));
    }
    table.Print(out);
}

std::string FormatTables(const std::vector<FileStatistics>& files) {
    std::ostringstream out;
    for (const FileStatistics& file : files) {
        if (&file != &files.front()) out << '\n';
        out << Printable(file.file) << ": " << file.version << ", " << file.events << " events\n";
        for (const Population& population : file.populations)
            PrintPopulation(out, population);
        for (const std::string& warning : file.warnings)
            out << "warning: " << warning << '\n';
    }
    return out.str();
}

}  // namespace

ParameterStatistics::ParameterStatistics(std::string name, const Orvane::OVSignalStatistics& statistics)
    : parameter(std::move(name)), count(static_cast<std::uint64_t>(statistics.Count)) {
    if (count == 0) return;
    min = Finite(statistics.Min);
    max = Finite(statistics.Max);
    mean = Finite(statistics.Average);
    median = Finite(statistics.Median);
    rsd = Finite(statistics.RobustSD);
    if (statistics.Median != 0) rcv = Finite(statistics.RobustCV);
    if (count == 1) return;
    sd = Finite(statistics.SD);
    cv = Finite(statistics.CV);
}

std::string FormatStatistics(const std::vector<FileStatistics>& files, Format format) {
    switch (format) {
        case Format::Csv:
            return FormatCsv(files);
        case Format::Json:
            return FormatJson(files);
        default:
            return FormatTables(files);
    }
}

}  // namespace Host
