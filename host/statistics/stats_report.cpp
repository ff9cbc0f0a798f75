#include "statistics/stats_report.h"

#include <array>
#include <cmath>
#include <sstream>
#include <utility>

#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

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

FloatJson ToJson(const PopulationStatistics& population) {
    FloatJson statistics = FloatJson::array();
    for (const ParameterStatistics& row : population.parameters) {
        FloatJson entry{{"parameter", ToUtf8(row.parameter)}, {"count", row.count}};
        for (const NamedStatistic& statistic : Statistics)
            entry[statistic.key] = OrNull(row.*statistic.value);
        statistics.push_back(std::move(entry));
    }
    FloatJson result = ToJson(population.population);
    result["statistics"] = std::move(statistics);
    return result;
}

std::string FormatJson(const std::vector<FileStatistics>& files) {
    FloatJson list = FloatJson::array();
    for (const FileStatistics& file : files) {
        FloatJson populations = FloatJson::array();
        for (const PopulationStatistics& population : file.populations)
            populations.push_back(ToJson(population));
        list.push_back(ToJson(file.summary));
        list.back()["populations"] = std::move(populations);
    }
    return FloatJson{{"files", std::move(list)}}.dump(2) + '\n';
}

void AppendCsvRow(std::string& text, const FileSummary& file, const PopulationSummary& population,
                  const ParameterStatistics& row) {
    text +=
        CsvFields(file, population) + ',' + CsvField(ToUtf8(row.parameter)) + ',' + std::to_string(row.count);
    for (const NamedStatistic& statistic : Statistics)
        text += ',' + CsvNumber(row.*statistic.value);
    text += '\n';
}

std::string FormatCsv(const std::vector<FileStatistics>& files) {
    std::string text = CsvTitles() + ",parameter,count";
    for (const NamedStatistic& statistic : Statistics)
        text += std::string(",") + statistic.key;
    text += '\n';
    for (const FileStatistics& file : files) {
        for (const PopulationStatistics& population : file.populations) {
            for (const ParameterStatistics& row : population.parameters)
                AppendCsvRow(text, file.summary, population.population, row);
        }
    }
    return text;
}

std::string TableNumber(const ParameterStatistics& row, const NamedStatistic& statistic) {
    const std::optional<float> value = row.*statistic.value;
    if (!value) return "-";
    return Rounded(statistic.isRatio ? 100.0 * *value : *value);
}

std::string FormatTables(const std::vector<FileStatistics>& files) {
    std::ostringstream out;
    for (const FileStatistics& file : files) {
        if (&file != &files.front()) out << '\n';
        PrintHeadline(out, file.summary);
        if (!file.tree.empty()) PrintTree(out, file.tree);
        for (const PopulationStatistics& population : file.populations) {
            if (!file.tree.empty()) out << '\n';
            TabulateStatistics(population, Printable(population.population.name)).Print(out);
        }
        PrintWarnings(out, file.summary);
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

Table TabulateStatistics(const PopulationStatistics& population, const std::string& first) {
    std::vector<Table::Column> columns{{first, Table::Align::Left}, {"count", Table::Align::Right}};
    for (const NamedStatistic& statistic : Statistics)
        columns.push_back({statistic.title, Table::Align::Right});
    Table table(std::move(columns));
    for (const ParameterStatistics& row : population.parameters) {
        std::vector<std::string> cells{Printable(row.parameter), std::to_string(row.count)};
        for (const NamedStatistic& statistic : Statistics)
            cells.push_back(TableNumber(row, statistic));
        table.Add(std::move(cells));
    }
    return table;
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
