#include "commands/gate_command.h"

#include "files/parallel.h"
#include "files/progress.h"
#include "statistics/population_report.h"

namespace Host {
namespace {

struct GateResult {
    std::string populations;
    std::string membership;
};

/// One line per event, numbered from 0, and one field per population, in the order of the tree.
std::string FormatMembership(const Strategy& strategy, std::vector<GatedPopulation>& populations) {
    std::string text = "event";
    for (const std::size_t gate : strategy.treeOrder)
        text += ',' + CsvField(populations[gate].name);
    text += '\n';
    if (populations.empty()) return text;
    std::uint64_t event = 0;
    const std::vector<Orvane::FilterSection*>& sections = populations.front().members.Sections();
    for (std::size_t i = 0; i < sections.size(); ++i) {
        for (int e = 0; e < sections[i]->Count; ++e) {
            text += std::to_string(event++);
            for (const std::size_t gate : strategy.treeOrder)
                text += populations[gate].members.Sections()[i]->GetFlag(e) ? ",1" : ",0";
            text += '\n';
        }
    }
    return text;
}

GateResult CountPopulations(const GateOptions& options, const Analysis& analysis) {
    Findings findings(options.strict);
    FcsFile file = OpenFcsFile(options.file, findings);
    SizePool({&file});
    Progress progress(file.data.events * file.layout.parameters.size());
    GatedSample sample(file, analysis, findings, [&](std::uint64_t amount) { progress.Add(amount); });
    const std::vector<PopulationSummary> tree =
        ListPopulations(analysis, sample.Populations(), file.data.events);
    GateResult result;
    result.populations = FormatPopulations(
        {options.file, file.header.version, file.data.events, findings.Warnings()}, tree, options.format);
    if (!options.membership.empty()) {
        result.membership = FormatMembership(*analysis.strategy, sample.Populations());
    }
    return result;
}

}  // namespace

int RunGate(const GateOptions& options) {
    const Analysis analysis = ReadAnalysis(options.analysis, ValueKind::Scale);
    GateResult result;
    const std::string refusal = RunGuarded([&] { result = CountPopulations(options, analysis); });
    if (!refusal.empty()) {
        PrintRefusal(options.file, refusal);
        return 1;
    }
    if (!options.membership.empty()) WriteResult(result.membership, options.membership);
    WriteResult(result.populations, options.output);
    return 0;
}

}  // namespace Host
