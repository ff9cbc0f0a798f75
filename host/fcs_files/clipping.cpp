#include "fcs_files/clipping.h"

#include <algorithm>
#include <cmath>

#include "text/numbers.h"

namespace Host {
namespace {

void AppendCount(std::string& text, std::uint64_t count, const std::string& what) {
    if (count != 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + what;
}

}  // namespace

void ClippingCounter::Count(const Orvane::EventSection& events) {
    for (std::size_t p = 0; p < parameters_.size(); ++p) {
        const float* column = events[static_cast<int>(p)];
        if (isInteger_) {
            CountClipped(column, events.Count, parameters_[p].range, counts_[p]);
        } else {
            counts_[p].infinite += static_cast<std::uint64_t>(
                std::count_if(column, column + events.Count, [](float x) { return std::isinf(x); }));
        }
    }
}

void ClippingCounter::Warn(Findings& findings) const {
    for (std::size_t p = 0; p < parameters_.size(); ++p) {
        const Counts& counts = counts_[p];
        if (isInteger_) WarnOfClipped(parameters_[p], counts, findings);
        if (counts.infinite == 0) continue;
        findings.Warn({"DATA of " + parameters_[p].name, std::to_string(counts.infinite) + " infinite values",
                       "numbers that 32-bit floats hold"},
                      "they are written as infinite");
    }
}

void ClippingCounter::CountClipped(const float* column, int events, double range, Counts& counts) {
    for (int e = 0; e < events; ++e) {
        counts.below += column[e] < 0 ? 1U : 0U;
        counts.above += column[e] >= range ? 1U : 0U;
        counts.notNumbers += std::isnan(column[e]) ? 1U : 0U;
    }
}

void ClippingCounter::WarnOfClipped(const StoredParameter& parameter, const Counts& counts,
                                    Findings& findings) {
    const std::string largest = Shortest(std::ceil(parameter.range) - 1);
    std::string clipped;
    AppendCount(clipped, counts.below, " below 0");
    AppendCount(clipped, counts.above, " above " + largest);
    AppendCount(clipped, counts.notNumbers, " not numbers");
    if (clipped.empty()) return;
    findings.Warn({"DATA of " + parameter.name, clipped, "values from 0 to " + largest},
                  counts.notNumbers == 0 ? "they are clipped"
                                         : "they are clipped, and what is no number is written as 0");
}

}  // namespace Host
