// Operations over vectors of filter sections: one bit per event, cut into sections as the sample is.
//
// Filter section i of a vector belongs to section i of the sample; event j of it is bit j mod 32, least
// significant first, of word j / 32. `TrueCount` is a stored number: only the operations that say so bring it
// up to date, the combining ones leave it stale.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// The caller owns vectors and records; an operation that takes sections out of a vector releases and deletes
/// them. Pool failures (OutOfMemoryException*) pass through: finished sections stay in their vector,
/// half-made ones are given back.
class ORVANE_API IOVFilterSection {
public:
    virtual ~IOVFilterSection() = default;

    /// Returns the bits of every section to the pool, deletes the records and empties the vector, last
    /// section first.
    virtual void ReleaseVectorSection(std::vector<FilterSection*>& sections) = 0;

    /// Makes `sections` parallel to `counts`: surplus sections at the end are released and deleted, missing
    /// ones appended, and every section i gets `counts[i]` events with all bits false. The `TrueCount` of
    /// sections that stay is not touched.
    virtual void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                          std::vector<int>& counts) = 0;

    /// The same with the `Count` of every section of a parallel vector.
    virtual void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                          std::vector<EventSection*>& events) = 0;
    virtual void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                          std::vector<SignalSection*>& signals) = 0;
    virtual void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                          std::vector<FilterSection*>& other) = 0;

    /// Sum of `Count`, in 32-bit arithmetic.
    virtual long GetTotalCount(std::vector<FilterSection*>& sections) = 0;

    /// Number of events that are set in both vectors, section by section up to the end of the shorter vector
    /// and of the shorter section. A pair with a stored `TrueCount` of 0 on either side counts as empty.
    virtual long GetTrueTotalCount(std::vector<FilterSection*>& a, std::vector<FilterSection*>& b) = 0;

    /// Sum of the stored `TrueCount`; no bits are looked at.
    virtual long GetTrueTotalCount(std::vector<FilterSection*>& sections) = 0;

    /// Counts the set bits below every section's `Count` and returns the total. The sections' `TrueCount` is
    /// not stored.
    virtual long CalcListSectionTrueCount(std::vector<FilterSection*>& sections) = 0;

    /// The bit of the event with this index over all sections; false outside them.
    virtual bool GetValue(std::vector<FilterSection*>& sections, int index) = 0;

    /// `dest` becomes `dest` and/or `other`, in the words that cover `Count`. Positions with the same record
    /// on both sides or with different `Count` are left alone; `TrueCount` goes stale. False, with nothing
    /// changed, when the vectors differ in length.
    virtual bool And(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& other) = 0;
    virtual bool Or(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& other) = 0;

    /// Copies headers, `TrueCount` and the first `Count / 8` whole bytes of bits, rounded down: the bits of a
    /// last partial byte stay as they were in `dest`. False when the vectors differ in length.
    virtual bool Copy(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& source) = 0;

    /// Sets all bits of every section, also those above `Count`, and `TrueCount` to `Count` or 0. False for
    /// an empty vector.
    virtual bool SetAllTrue(std::vector<FilterSection*>& sections) = 0;
    virtual bool SetAllFalse(std::vector<FilterSection*>& sections) = 0;

    /// Numbers the events of one section by gate: 1 + the position of the last of `filters` that contains the
    /// event, so later gates win. `out->Count` becomes that of `filters[0]`, 0 without filters.
    ///
    /// With `base`, only its events are numbered; all others, and those in no filter, get 65535.
    virtual void CalcFilterIndex(FilterSection* base, std::vector<FilterSection*>& filters,
                                 ModelSection* out) = 0;
    /// Without `base`, events in no filter and the entries up to `out->Capacity` get 0.
    virtual void CalcFilterIndex(std::vector<FilterSection*>& filters, ModelSection* out) = 0;

    /// Writes the numbers of the events of `base` one after another from the start of `out`, 0 for those in
    /// no filter, and sets `out->Count` to how many there are.
    virtual void CalcFilterIndexInTrue(FilterSection* base, std::vector<FilterSection*>& filters,
                                       ModelSection* out) = 0;

    /// Packs the membership of the events of `base`: bit n of `*outputs[g]` is the bit of the n-th event of
    /// `base` in `*gates[g]`. Each of `gates` is parallel to `base`; sections of `outputs`, which runs
    /// parallel to `gates`, are reused or made as by GetNextSection and get their `TrueCount`. A section is
    /// followed by the next one as soon as it is full, so an exact multiple of the capacity ends with an
    /// empty section.
    virtual void ExtratTrueFilter(std::vector<FilterSection*>& base,
                                  std::vector<std::vector<FilterSection*>*>& gates,
                                  std::vector<std::vector<FilterSection*>*>& outputs) = 0;

    /// The section into which writing continues after `current`, or the first one for null: an existing one
    /// with its `Count` and tags cleared and its `Index` set, else a new one. Bits are left as they are.
    /// Throws InvalidParameterException* "The section object is not in vector." for a foreign `current`.
    virtual FilterSection* GetNextSection(std::vector<FilterSection*>& sections, FilterSection* current) = 0;

    /// Composite gates: `real` is the gate's own result, `parent` the population it applies within. Its bits,
    /// inverted for `NotReal` and limited to the parent for `AndParent`, replace those of `dest` (`Copy`) or
    /// are combined into them (`Or`, `And`). Only bits are written: the headers and `TrueCount` of `dest`
    /// stay. `Copy` writes `Capacity` bits; inversion and combination cover the words up to `Count`, and a
    /// combination with a section of different `Count` is skipped. False, with nothing changed, when the
    /// vectors differ in length.
    virtual bool Composite_Comp_Copy_RealAndParent(std::vector<FilterSection*>& dest,
                                                   std::vector<FilterSection*>& real,
                                                   std::vector<FilterSection*>& parent) = 0;
    virtual bool Composite_Comp_Copy_NotRealAndParent(std::vector<FilterSection*>& dest,
                                                      std::vector<FilterSection*>& real,
                                                      std::vector<FilterSection*>& parent) = 0;
    virtual bool Composite_Comp_Copy_NotReal(std::vector<FilterSection*>& dest,
                                             std::vector<FilterSection*>& real) = 0;
    virtual bool Composite_Comp_Or_RealAndParent(std::vector<FilterSection*>& dest,
                                                 std::vector<FilterSection*>& real,
                                                 std::vector<FilterSection*>& parent) = 0;
    virtual bool Composite_Comp_Or_NotRealAndParent(std::vector<FilterSection*>& dest,
                                                    std::vector<FilterSection*>& real,
                                                    std::vector<FilterSection*>& parent) = 0;
    virtual bool Composite_Comp_And_NotRealAndParent(std::vector<FilterSection*>& dest,
                                                     std::vector<FilterSection*>& real,
                                                     std::vector<FilterSection*>& parent) = 0;
    virtual bool Composite_Comp_Or_NotReal(std::vector<FilterSection*>& dest,
                                           std::vector<FilterSection*>& real) = 0;
    virtual bool Composite_Comp_And_NotReal(std::vector<FilterSection*>& dest,
                                            std::vector<FilterSection*>& real) = 0;

    /// How many events from the start hold the first `k` set ones: 0 for k < 1, the total `Count` when there
    /// are fewer. Sections are skipped by their stored `TrueCount`; a section that holds fewer set bits than
    /// it claims gets its `TrueCount` corrected and ends the search at its end.
    virtual long GetCountByTrueCount(std::vector<FilterSection*>& sections, int k) = 0;

    /// Selects evenly spaced events: `fraction` (0.25 is a quarter, whatever the name says) of all of them,
    /// starting with the first, 1 / fraction apart. Bits are added to those already set, so the sections
    /// should start cleared; `TrueCount` becomes the number selected in each.
    virtual void GetFilterSectionByPercent(std::vector<FilterSection*>& sections, float fraction) = 0;

    /// Selects the first, or the last, `n` events: sections that are wholly inside get all bits set, those
    /// wholly outside are cleared, and the one that is cut gets its bits added to those already set, so it
    /// should start cleared. `TrueCount` is updated.
    virtual void GetFilterSectionByCount(std::vector<FilterSection*>& sections, int n) = 0;
    virtual void GetFilterSectionByCountReverse(std::vector<FilterSection*>& sections, int n) = 0;
};

/// The stateless implementation.
class ORVANE_API OVFilterSection : public IOVFilterSection {
public:
    void ReleaseVectorSection(std::vector<FilterSection*>& sections) override;
    void SynchronousVectorSection(std::vector<FilterSection*>& sections, std::vector<int>& counts) override;
    void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                  std::vector<EventSection*>& events) override;
    void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                  std::vector<SignalSection*>& signals) override;
    void SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                  std::vector<FilterSection*>& other) override;
    long GetTotalCount(std::vector<FilterSection*>& sections) override;
    long GetTrueTotalCount(std::vector<FilterSection*>& a, std::vector<FilterSection*>& b) override;
    long GetTrueTotalCount(std::vector<FilterSection*>& sections) override;
    long CalcListSectionTrueCount(std::vector<FilterSection*>& sections) override;
    bool GetValue(std::vector<FilterSection*>& sections, int index) override;
    bool And(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& other) override;
    bool Or(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& other) override;
    bool Copy(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& source) override;
    bool SetAllTrue(std::vector<FilterSection*>& sections) override;
    bool SetAllFalse(std::vector<FilterSection*>& sections) override;
    void CalcFilterIndex(FilterSection* base, std::vector<FilterSection*>& filters,
                         ModelSection* out) override;
    void CalcFilterIndex(std::vector<FilterSection*>& filters, ModelSection* out) override;
    void CalcFilterIndexInTrue(FilterSection* base, std::vector<FilterSection*>& filters,
                               ModelSection* out) override;
    void ExtratTrueFilter(std::vector<FilterSection*>& base, std::vector<std::vector<FilterSection*>*>& gates,
                          std::vector<std::vector<FilterSection*>*>& outputs) override;
    FilterSection* GetNextSection(std::vector<FilterSection*>& sections, FilterSection* current) override;
    bool Composite_Comp_Copy_RealAndParent(std::vector<FilterSection*>& dest,
                                           std::vector<FilterSection*>& real,
                                           std::vector<FilterSection*>& parent) override;
    bool Composite_Comp_Copy_NotRealAndParent(std::vector<FilterSection*>& dest,
                                              std::vector<FilterSection*>& real,
                                              std::vector<FilterSection*>& parent) override;
    bool Composite_Comp_Copy_NotReal(std::vector<FilterSection*>& dest,
                                     std::vector<FilterSection*>& real) override;
    bool Composite_Comp_Or_RealAndParent(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& real,
                                         std::vector<FilterSection*>& parent) override;
    bool Composite_Comp_Or_NotRealAndParent(std::vector<FilterSection*>& dest,
                                            std::vector<FilterSection*>& real,
                                            std::vector<FilterSection*>& parent) override;
    bool Composite_Comp_And_NotRealAndParent(std::vector<FilterSection*>& dest,
                                             std::vector<FilterSection*>& real,
                                             std::vector<FilterSection*>& parent) override;
    bool Composite_Comp_Or_NotReal(std::vector<FilterSection*>& dest,
                                   std::vector<FilterSection*>& real) override;
    bool Composite_Comp_And_NotReal(std::vector<FilterSection*>& dest,
                                    std::vector<FilterSection*>& real) override;
    long GetCountByTrueCount(std::vector<FilterSection*>& sections, int k) override;
    void GetFilterSectionByPercent(std::vector<FilterSection*>& sections, float fraction) override;
    void GetFilterSectionByCount(std::vector<FilterSection*>& sections, int n) override;
    void GetFilterSectionByCountReverse(std::vector<FilterSection*>& sections, int n) override;
};

}  // namespace Orvane
