// Which values an integer type cannot hold, and which a float did not.
#pragma once

#include <cstdint>
#include <vector>

#include <orvane/Sections.h>

#include "fcs_files/stored_parameters.h"
#include "files/findings.h"

namespace Host {

/// Counts them, section by section, for each parameter.
class ClippingCounter {
public:
    /// Floating-point types hold every value; for them infinite ones are counted, as doubles beyond the range
    /// of floats become.
    ClippingCounter(const StoredFormat& format, const std::vector<StoredParameter>& parameters)
        : isInteger_(format.IsInteger()), parameters_(parameters), counts_(parameters.size()) {}

    void Count(const Orvane::EventSection& events);

    void Warn(Findings& findings) const;

private:
    struct Counts {
        std::uint64_t below = 0;  ///< 0
        std::uint64_t above = 0;  ///< the range less one
        std::uint64_t notNumbers = 0;
        std::uint64_t infinite = 0;  ///< of a floating-point type
    };

    static void CountClipped(const float* column, int events, double range, Counts& counts);
    static void WarnOfClipped(const StoredParameter& parameter, const Counts& counts, Findings& findings);

    bool isInteger_;
    std::vector<StoredParameter> parameters_;
    std::vector<Counts> counts_;
};

}  // namespace Host
