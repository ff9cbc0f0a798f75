// Making and releasing vectors of count sections.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Stateless operations over vectors of count sections. The caller owns vectors and records.
class ORVANE_API IOVCountSection {
public:
    virtual ~IOVCountSection() = default;

    /// Fills the vector with `n` new sections whose counters are zero. Records that the vector held are
    /// dropped, neither released nor deleted: release them before. OutOfMemoryException* leaves the sections
    /// made so far.
    virtual void NewVectorSection(std::vector<CountSection*>& sections, int n) = 0;

    /// Returns every section's counters and deletes the records; empties the vector.
    virtual void ReleaseVectorSection(std::vector<CountSection*>& sections) = 0;
};

/// The operations of IOVCountSection. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVCountSection : public IOVCountSection {
public:
    void NewVectorSection(std::vector<CountSection*>& sections, int n) override;
    void ReleaseVectorSection(std::vector<CountSection*>& sections) override;
};

}  // namespace Orvane
