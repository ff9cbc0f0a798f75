#include "fcs_files/stored_parameters.h"

#include <orvane/OVEventSection.h>

#include <algorithm>
#include <cmath>

#include "text/numbers.h"

namespace Host {
namespace {

/// $PnR on the scale of the values.
std::optional<double> StatedRange(const Parameter& parameter, ValueKind values) {
    if (!parameter.range || values == ValueKind::Channel) return parameter.range;
    if (parameter.IsLog()) return std::ceil(parameter.logOffset * std::pow(10.0, parameter.decades));
    return std::ceil(*parameter.range / parameter.gain.value_or(1.0));
}

double ChooseRange(std::optional<double> stated, double largest, const StoredFormat& format) {
    constexpr double SmallestOfIntegers = 2;
    const double needed = std::floor(std::max(largest, 0.0)) + 1;
    if (!format.IsInteger()) return std::min(stated.value_or(needed), format.Limit());
    return std::clamp(std::max(stated.value_or(0), needed), SmallestOfIntegers, format.Limit());
}

void CheckLogChannels(std::size_t n, const Parameter& parameter, const StoredFormat& format) {
    if (format.IsInteger() && *parameter.range <= format.Limit()) return;
    const std::string place = "range of the logarithmic parameter $P" + std::to_string(n);
    Refuse(place, Shortest(*parameter.range),
           format.IsInteger() ? "at most " + Shortest(format.Limit()) + " for channel values of this type"
                              : "scale values, or an integer type for channel values");
}

}  // namespace

std::vector<StoredParameter> DescribeParameters(std::vector<Orvane::EventSection*>& events,
                                                const EventLayout& layout, ValueKind values,
                                                const StoredFormat& format) {
    std::vector<StoredParameter> stored;
    for (std::size_t p = 0; p < layout.parameters.size(); ++p) {
        const Parameter& parameter = layout.parameters[p];
        if (values == ValueKind::Channel && parameter.IsLog()) {
            CheckLogChannels(p + 1, parameter, format);
            stored.push_back(
                {parameter.name, *parameter.range, parameter.decades, parameter.logOffset, parameter.gain});
            continue;
        }
        float largest = 0;
        float smallest = 0;
        Orvane::OVEventSection().GetValueMaxAndMin(events, static_cast<int>(p), largest, smallest);
        stored.push_back({parameter.name, ChooseRange(StatedRange(parameter, values), largest, format)});
        if (values == ValueKind::Channel) stored.back().gain = parameter.gain;
    }
    return stored;
}

}  // namespace Host
