#include "statistics/population_report.h"

#include <sstream>
#include <utility>

#include "text/display.h"
#include "text/numbers.h"
#include "text/table.h"

namespace Host {
namespace {

std::optional<float> Percent(std::uint64_t part, std::uint64_t whole) {
    if (whole == 0) return std::nullopt;
    return static_cast<float>(100.0 * static_cast<double>(part) / static_cast<double>(whole));
}

std::string Joined(const std::vector<std::string>& warnings) {
    std::string text;
    for (const std::string& warning : warnings)
        text += (text.empty() ? "" : " | ") + warning;
    return text;
}

std::string TablePercent(const std::optional<float>& percent) {
    return percent ? Rounded(*percent) : "-";
}

std::string FormatJson(const FileSummary& file, const std::vector<PopulationSummary>& populations) {
    FloatJson list = FloatJson::array();
    for (const PopulationSummary& population : populations)
        list.push_back(ToJson(population));
    FloatJson result = ToJson(file);
    result["populations"] = std::move(list);
    return result.dump(2) + '\n';
}

std::string FormatCsv(const FileSummary& file, const std::vector<PopulationSummary>& populations) {
    std::string text = CsvTitles() + '\n';
    for (const PopulationSummary& population : populations)
        text += CsvFields(file, population) + '\n';
    return text;
}

}  // namespace

std::vector<PopulationSummary> ListPopulations(const Analysis& analysis,
                                               const std::vector<GatedPopulation>& populations,
                                               std::uint64_t events) {
    PopulationSummary all;
    all.name = Strategy::Everything;
    all.count = events;
    all.percentOfTotal = Percent(events, events);
    std::vector<PopulationSummary> list{all};
    if (!analysis.strategy) return list;
    std::vector<std::size_t> places(populations.size());
    for (const std::size_t gate : analysis.strategy->treeOrder) {
        const GatedPopulation& population = populations[gate];
        const PopulationSummary& parent = list[population.parent ? places[*population.parent] : 0];
        places[gate] = list.size();
        list.push_back({population.name, parent.name, parent.depth + 1, population.count,
                        Percent(population.count, parent.count), Percent(population.count, events), gate});
    }
    return list;
}

FloatJson ToJson(const FileSummary& file) {
    return {{"file", ToUtf8(file.file)},
            {"version", file.version},
            {"events", file.events},
            {"warnings", file.warnings}};
}

FloatJson ToJson(const PopulationSummary& population) {
    return {{"name", population.name},
            {"parent", population.parent ? FloatJson(*population.parent) : FloatJson(nullptr)},
            {"count", population.count},
            {"percent_of_parent", OrNull(population.percentOfParent)},
            {"percent_of_total", OrNull(population.percentOfTotal)}};
}

std::string CsvTitles() {
    return "file,version,events,warnings,population,parent,population_count,percent_of_parent,percent_of_"
           "total";
}

std::string CsvFields(const FileSummary& file, const PopulationSummary& population) {
    return CsvField(ToUtf8(file.file)) + ',' + file.version + ',' + std::to_string(file.events) + ',' +
           CsvField(Joined(file.warnings)) + ',' + CsvField(population.name) + ',' +
           CsvField(population.parent.value_or("")) + ',' + std::to_string(population.count) + ',' +
           CsvNumber(population.percentOfParent) + ',' + CsvNumber(population.percentOfTotal);
}

void PrintHeadline(std::ostream& out, const FileSummary& file) {
    out << Printable(file.file) << ": " << file.version << ", " << file.events
        << (file.events == 1 ? " event\n" : " events\n");
}

void PrintWarnings(std::ostream& out, const FileSummary& file) {
    for (const std::string& warning : file.warnings)
        out << "warning: " << warning << '\n';
}

void PrintTree(std::ostream& out, const std::vector<PopulationSummary>& populations) {
    using Align = Table::Align;
    Table table({{"population", Align::Left},
                 {"count", Align::Right},
                 {"% of parent", Align::Right},
                 {"% of total", Align::Right}});
    for (const PopulationSummary& population : populations) {
        table.Add({std::string(2UL * population.depth, ' ') + Printable(population.name),
                   std::to_string(population.count), TablePercent(population.percentOfParent),
                   TablePercent(population.percentOfTotal)});
    }
    table.Print(out);
}

std::string FormatPopulations(const FileSummary& file, const std::vector<PopulationSummary>& populations,
                              Format format) {
    if (format == Format::Json) return FormatJson(file, populations);
    if (format == Format::Csv) return FormatCsv(file, populations);
    std::ostringstream out;
    PrintHeadline(out, file);
    PrintTree(out, populations);
    PrintWarnings(out, file);
    return out.str();
}

}  // namespace Host
