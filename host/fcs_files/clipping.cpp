#include "fcs_files/clipping.h"

#include <cmath>

#include "text/numbers.h"

namespace Host {
namespace {

void AppendCount(std::string& text, std::uint64_t count, const std::string& what) {
    if (count != 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + what;
}

}  // namespace

ClippingCounter::ClippingCounter(const StoredFormat& format, const std::vector<StoredParameter>& parameters) {
    if (format.IsInteger()) parameters_ = parameters;
    counts_.resize(parameters_.size());
}

void ClippingCounter::Count(const Orvane::EventSection& events) {
    for (std::size_t p = 0; p < parameters_.size(); ++p) {
        const double range = parameters_[p].range;
        const float* column = events[static_cast<int>(p)];
        Counts& counts = counts_[p];
        for (int e = 0; e < events.Count; ++e) {
            counts.below += column[e] < 0 ? 1U : 0U;
            counts.above += column[e] >= range ? 1U : 0U;
            counts.notNumbers += std::isnan(column[e]) ? 1U : 0U;
        }
    }
}

void ClippingCounter::Warn(Findings& findings) const {
    for (std::size_t p = 0; p < parameters_.size(); ++p) {
        const Counts& counts = counts_[p];
        const std::string largest = Shortest(std::ceil(parameters_[p].range) - 1);
        std::string clipped;
        AppendCount(clipped, counts.below, " below 0");
        AppendCount(clipped, counts.above, " above " + largest);
        AppendCount(clipped, counts.notNumbers, " not numbers");
        if (clipped.empty()) continue;
        findings.Warn({"DATA of " + parameters_[p].name, clipped, "values from 0 to " + largest},
                      counts.notNumbers == 0 ? "they are clipped"
                                             : "they are clipped, and what is no number is written as 0");
    }
}

}  // namespace Host
