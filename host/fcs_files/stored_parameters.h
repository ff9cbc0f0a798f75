// How the values of a file to be written are stored: their type, and what the $Pn keywords say about them.
#pragma once

#include <limits>
#include <vector>

#include <orvane/Sections.h>

#include "fcs_files/fcs_parameters.h"
#include "fcs_files/sample.h"

namespace Host {

enum class StoredType { Float, Double, Int16, Int32 };

struct StoredFormat {
    StoredType type = StoredType::Float;
    bool littleEndian = true;

    bool IsInteger() const { return type == StoredType::Int16 || type == StoredType::Int32; }
    int Bytes() const { return type == StoredType::Double ? 8 : type == StoredType::Int16 ? 2 : 4; }
    int Bits() const { return 8 * Bytes(); }
    /// One more than the largest value.
    double Limit() const {
        return IsInteger() ? static_cast<double>(std::uint64_t{1} << static_cast<unsigned>(Bits()))
                           : std::numeric_limits<double>::max();
    }
};

struct StoredParameter {
    std::string name;              ///< $PnN
    double range;                  ///< $PnR; integers are at most one less
    double decades = 0;            ///< $PnE
    double logOffset = 0;          ///< $PnE
    std::optional<double> gain{};  ///< $PnG
};

/// Describes the columns of `events`, which hold values of the kind `values` of a file with this layout.
///
/// Scale values are linear without gain; channel values keep the amplification they need. The range is the
/// file's on the scale of the values. For integers it grows to hold the largest value as far as their type
/// allows, so that only the type clips, except for logarithmic channels, whose scale depends on it. Throws
/// Refusal for those when the type cannot hold them.
std::vector<StoredParameter> DescribeParameters(std::vector<Orvane::EventSection*>& events,
                                                const EventLayout& layout, ValueKind values,
                                                const StoredFormat& format);

}  // namespace Host
