// Making and releasing vectors of segment sections, which hold raw file data.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Stateless operations over vectors of segment sections. The caller owns vectors and records.
class ORVANE_API IOVSegmentSection {
public:
    virtual ~IOVSegmentSection() = default;

    /// Appends `n` new sections with a raw segment each and `Count` 0. OutOfMemoryException* leaves the
    /// sections made so far.
    virtual void NewVectorSection(std::vector<SegmentSection*>& sections, int n) = 0;

    /// Returns every section's segment and deletes the records; empties the vector.
    virtual void ReleaseVectorSection(std::vector<SegmentSection*>& sections) = 0;
};

/// The operations of IOVSegmentSection. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVSegmentSection : public IOVSegmentSection {
public:
    void NewVectorSection(std::vector<SegmentSection*>& sections, int n) override;
    void ReleaseVectorSection(std::vector<SegmentSection*>& sections) override;
};

}  // namespace Orvane
