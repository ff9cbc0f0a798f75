// Which values an integer type cannot hold.
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
    /// Floating-point types hold every value; for them nothing is counted.
    ClippingCounter(const StoredFormat& format, const std::vector<StoredParameter>& parameters);

    void Count(const Orvane::EventSection& events);

    void Warn(Findings& findings) const;

private:
    struct Counts {
        std::uint64_t below = 0;  ///< 0
        std::uint64_t above = 0;  ///< the range less one
        std::uint64_t notNumbers = 0;
    };

    std::vector<StoredParameter> parameters_;  ///< those of an integer type
    std::vector<Counts> counts_;
};

}  // namespace Host
