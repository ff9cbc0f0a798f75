// Operations over vectors of signal sections: one float column per section, either a view of one signal of an
// event vector or a copy with packets of its own.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Stateless operations over vectors of signal sections. The caller owns vectors and records. Global value g
/// is counted across the sections in order. OutOfMemoryException* passes with the vectors in the state
/// reached and no record lost.
class ORVANE_API IOVSignalSection {
public:
    virtual ~IOVSignalSection() = default;

    /// The number of values, formed in 32 bits.
    virtual long GetTotalCount(std::vector<SignalSection*>& sections) = 0;

    /// The value at global position `index`; 0.0 for a negative index and beyond the last value.
    virtual float GetValue(std::vector<SignalSection*>& sections, int index) = 0;

    /// Element 0 of the first section, whether or not it holds a value; 0.0 for an empty vector.
    virtual float GetFirstValue(std::vector<SignalSection*>& sections) = 0;

    /// The last value of the last section; 0.0 when that section is empty, whatever the ones before it hold,
    /// or when there is none.
    virtual float GetLastValue(std::vector<SignalSection*>& sections) = 0;

    /// Makes `dest` a copy of `source` with packets of its own; what `dest` held is released first. Always
    /// true.
    virtual bool CopyVectorSignalSection(std::vector<SignalSection*>& source,
                                         std::vector<SignalSection*>& dest) = 0;

    /// Returns every section's packet and deletes the records; empties the vector.
    virtual void ReleaseVectorSection(std::vector<SignalSection*>& sections) = 0;

    /// Deletes the records and returns no packet (the columns belong to others); empties the vector.
    virtual void ReleaseVectorSectionShare(std::vector<SignalSection*>& sections) = 0;

    /// Appends to `dest` a copy of every source section: the header, and a whole packet of its own.
    virtual void NewCopyVectorSignalSection(std::vector<SignalSection*>& dest,
                                            std::vector<SignalSection*>& source) = 0;

    /// The section in which writing continues behind `current`, emptied: the first one when `current` is
    /// null, else the one behind it, made and appended when there is none. Where the `Index` of `current` is
    /// not its position, all sections are renumbered. Throws InvalidParameterException* when `current` is not
    /// in the vector.
    virtual SignalSection* GetNextSection(std::vector<SignalSection*>& sections, SignalSection* current) = 0;

    /// The largest and the smallest value; NaN is neither. Both are 0.0 without values.
    virtual void GetValueMaxAndMin(std::vector<SignalSection*>& sections, float& max, float& min) = 0;

    /// The mean absolute ratio of two parallel vectors, of which the first 16 sections are used. The ratio is
    /// formed in float and summed in double; a height of exactly zero adds nothing but counts. NaN without
    /// values.
    virtual double CalcAreaHeightRatio(std::vector<SignalSection*>& area,
                                       std::vector<SignalSection*>& height) = 0;
};

/// The operations of IOVSignalSection. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVSignalSection : public IOVSignalSection {
public:
    long GetTotalCount(std::vector<SignalSection*>& sections) override;
    float GetValue(std::vector<SignalSection*>& sections, int index) override;
    float GetFirstValue(std::vector<SignalSection*>& sections) override;
    float GetLastValue(std::vector<SignalSection*>& sections) override;
    bool CopyVectorSignalSection(std::vector<SignalSection*>& source,
                                 std::vector<SignalSection*>& dest) override;
    void ReleaseVectorSection(std::vector<SignalSection*>& sections) override;
    void ReleaseVectorSectionShare(std::vector<SignalSection*>& sections) override;
    void NewCopyVectorSignalSection(std::vector<SignalSection*>& dest,
                                    std::vector<SignalSection*>& source) override;
    SignalSection* GetNextSection(std::vector<SignalSection*>& sections, SignalSection* current) override;
    void GetValueMaxAndMin(std::vector<SignalSection*>& sections, float& max, float& min) override;
    double CalcAreaHeightRatio(std::vector<SignalSection*>& area,
                               std::vector<SignalSection*>& height) override;
};

}  // namespace Orvane
