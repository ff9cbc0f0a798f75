// The events of a file in the library's sections.
#pragma once

#include <functional>
#include <vector>

#include <orvane/Sections.h>

#include "fcs_files/fcs_file.h"

namespace Host {

enum class ValueKind {
    Channel,  ///< as stored, integers without the bits above $PnR
    Scale,    ///< amplification applied: logarithmic parameters as 10^(a x channel / range) x b, linear ones
              ///< divided by their gain
};

/// Makes the pool's packets as small as the largest of `files` allows, so that a file with few events takes
/// little memory whatever its number of parameters. Before the first sample only.
void SizePool(const std::vector<const FcsFile*>& files);

/// The columns of all parameters, whose storage returns to the pool at the end.
class Sample {
public:
    /// Reads the events of `file` section by section and tells `progress` how many bytes each has taken.
    /// Throws Refusal when the bytes are no events, OutOfMemoryException* when the pool cannot hold them.
    Sample(FcsFile& file, ValueKind values, const std::function<void(std::uint64_t)>& progress);
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;
    ~Sample();

    std::vector<Orvane::EventSection*>& Events() { return events_; }

private:
    void Load(FcsFile& file, ValueKind values, const std::function<void(std::uint64_t)>& progress);
    void Release();

    std::vector<Orvane::EventSection*> events_;
};

}  // namespace Host
