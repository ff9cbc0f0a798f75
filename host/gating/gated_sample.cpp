#include "gating/gated_sample.h"

#include "gating/gating_ml.h"

namespace Host {
namespace {

const Strategy NoGates;

void CheckPopulation(const Analysis& analysis) {
    std::string names = Strategy::Everything;
    bool found = analysis.population.empty() || analysis.population == names;
    if (analysis.strategy) {
        for (const std::size_t i : analysis.strategy->treeOrder) {
            const std::string& name = analysis.strategy->gates[i].id;
            found = found || name == analysis.population;
            names += ", " + name;
        }
    }
    if (!found) Refuse("--population", analysis.population, "one of " + names);
}

}  // namespace

Analysis ReadAnalysis(const AnalysisOptions& options, ValueKind values) {
    Analysis analysis;
    analysis.values = values;
    analysis.compensation = ReadCompensationChoice(options.compensate);
    if (values == ValueKind::Channel) analysis.compensation.source = CompensationChoice::Source::None;
    if (!options.gates.empty()) analysis.strategy = ReadStrategy(options.gates);
    analysis.population = options.population;
    CheckPopulation(analysis);
    return analysis;
}

GatedSample::GatedSample(FcsFile& file, const Analysis& analysis, Findings& findings,
                         const std::function<void(std::uint64_t)>& progress)
    : compensation_(ChooseCompensation(analysis.compensation, file.spillover, file.layout, findings)),
      binding_(analysis.strategy ? *analysis.strategy : NoGates, file.layout),
      sample_(file, analysis.values, progress),
      compensated_(sample_.Events(), compensation_) {
    populations_ = Evaluate(binding_, sample_.Events(), compensated_.Sections());
}

}  // namespace Host
