#include "acquisition/live_counts.h"

#include <array>
#include <cstdio>

#include "gating/populations.h"
#include "text/display.h"

namespace Host {
namespace {

Range Between(const char* parameter, std::optional<double> min, std::optional<double> max,
              const char* compensation = Dimension::Uncompensated) {
    return {{"live gate", compensation, parameter, "", ""}, min, max};
}

Range Bright(const char* parameter) {
    constexpr double Border = 1500;
    return Between(parameter, Border, std::nullopt, Dimension::FileMatrix);
}

}  // namespace

Strategy BloodStrategy() {
    Strategy strategy;
    const auto add = [&](const char* id, const char* parent, std::vector<Range> ranges) {
        strategy.gates.push_back({"live gate", id, parent, RectangleGate{std::move(ranges)}, {}});
    };
    add("Leukocytes", "", {Between("FSC-A", 30000, 250000), Between("SSC-A", 10000, 260000)});
    add("Lymphocytes", "Leukocytes", {Between("FSC-A", 35000, 90000), Between("SSC-A", 10000, 40000)});
    add("T cells", "Lymphocytes", {Bright("FITC-A")});
    add("B cells", "Lymphocytes", {Bright("APC-A")});
    add("Monocytes", "Leukocytes", {Bright("PE-Cy7-A")});
    Link(strategy);
    return strategy;
}

std::string FormatLiveCounts(const StrategyBinding& binding, Acquisition& acquisition) {
    Orvane::OVEventSection operations;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%9ld events", operations.GetTotalCount(acquisition.Events()));
    std::string line = text.data();
    const auto window = static_cast<double>(operations.GetTotalCount(acquisition.Window()));
    const std::vector<GatedPopulation> populations =
        Evaluate(binding, acquisition.Window(), acquisition.CompensatedWindow());
    for (const std::size_t gate : binding.GetStrategy().treeOrder) {
        const auto count = static_cast<double>(populations[gate].count);
        std::snprintf(text.data(), text.size(), " %.0f (%.1f %%)", count, 100 * count / window);
        line += "   " + Printable(populations[gate].name) + text.data();
    }
    return line + '\n';
}

}  // namespace Host
