// The section records: small headers over bulk storage from the pool.
//
// A sample of many events is a vector of EventSections, each holding up to `Capacity` events as one float
// column per signal. Gates are FilterSections with one bit per event, plots use ModelSections with one 16-bit
// number per event, histograms are CountSections, and raw file data comes in SegmentSections.
//
// Records are plain: construction, assignment and destruction take and return nothing. `Initial` takes
// storage from MemoryManage, `Release` returns it. Assignment is member-wise, so that two records may refer
// to one storage; exactly one of them may be released. A record whose storage pointer is null has no storage,
// and releasing it is harmless. The storage has the pool's size at the time of `Initial`, whatever `Count`
// says. Indices are not checked.
//
// A failing pool throws OutOfMemoryException* from every operation that takes storage; the record is then as
// it was. Returning what is not in use throws RepeatFreeException* or InvalidMemoryException*.
#pragma once

#include <cstdint>
#include <vector>

#include <orvane/Platform.h>

namespace Orvane {

/// The header that every section begins with.
struct ORVANE_API BaseSection {
    int Count = 0;     ///< valid entries, 0 to `Capacity`
    int Capacity = 0;  ///< entries that the storage can hold; set by `Initial`
    int Tag1 = 0;      ///< carried along; of a file segment, its first event
    int Tag2 = 0;      ///< carried along; of a file segment, the end of its events (exclusive)
    int Index = 0;     ///< position of the section within its vector

    /// Takes over the five fields of `src`.
    void Copy(BaseSection& src);
    /// Empties the section for another use: `Count`, `Tag1` and `Tag2` become 0, storage and position stay.
    void ClearData();
    /// Sets the five fields to 0.
    void Init();
};

/// One float column of `Capacity` values, of which the first `Count` are valid.
struct ORVANE_API SignalSection : BaseSection {
    float* Values = nullptr;  ///< the column; null without storage

    /// Takes a column; its contents are undefined and `Count` stays. Returns true.
    bool Initial();
    /// Returns the column and clears every field.
    void Release();
    /// Takes over the header and a copy of the whole column of `src`. A column held before is not returned.
    void Clone(SignalSection& src);
};

/// One column per signal: the value of signal `s` for event `e` is `Signals[s][e]`, `e` below `Count`.
///
/// A column belongs to the section, or it is shared: another section owns it and the same pointer stands in
/// both tables. The section does not know which. The caller says so on each call, in one of three forms:
/// - reuse flags: one entry per signal, true for a shared column;
/// - a signal map: one entry per signal, -1 for an own column, otherwise the signal of the source
///   section whose column is shared;
/// - a reference section: a column is shared when the reference has the same pointer at the same position.
///
/// The pointers stand in a table from the ordinary heap. "Sizes the table" means: a table with exactly the
/// wanted number of entries is kept as it stands, any other is deleted (not its columns) and replaced
/// by one with nulls.
struct ORVANE_API EventSection : BaseSection {
    int SignalCount = 0;        ///< entries of the table
    float** Signals = nullptr;  ///< the table of columns, one per signal; null before it is sized

    /// Sizes the table and takes a new column for every signal; contents are undefined and `Count` stays.
    /// Columns already in a kept table are not returned. Returns true.
    bool Initial(int signalCount);
    /// Sizes the table and sets every entry to null, to be filled with SetShareSignal. Returns true.
    bool Initial_Share(int signalCount);
    /// Sizes the table to `src` and fills it with shared columns of `src` and new ones. Returns true.
    bool Initial(EventSection& src, std::vector<bool>& reuse);
    /// Fills the table with new columns and with the mapped columns of `src`. `SignalCount` becomes the size
    /// of `map`, but a table that exists is kept whatever its length; it must hold that many entries.
    /// Returns true.
    bool Initial(EventSection& src, std::vector<int>& map);

    /// Returns every column that is not null, deletes the table and clears every field.
    void Release();
    /// As Release, sparing the shared columns.
    void Release(std::vector<bool>& reuse);
    /// As Release, sparing the shared columns.
    void Release(std::vector<int>& map);
    /// As Release, sparing the shared columns. `ref` must have as many signals as this section.
    void Release(EventSection& ref);
    /// As Release, sparing all columns.
    void Release_Share();

    /// A new record with this section's header over its column `s`: writing through it changes this section.
    /// The caller deletes the record and must not release it.
    SignalSection* GetSignalSection(int s);

    /// Takes over the header of `src`, sizes the table to it and copies every whole column into a new one.
    /// Columns in a kept table are not returned. Returns true.
    bool Clone(EventSection& src);
    /// Takes over the header of `src`, sizes the table to it and shares all its columns. Returns true.
    bool CopyShareSignal(EventSection& src);

    /// Sizes the table to `src`, copies `count` events of every signal from event `srcStart` of `src` to
    /// event `destStart`, and raises `Count` by `count`. Null columns are left out. Throws
    /// InvalidMemoryException*, with nothing changed, when `Count + count` exceeds `Capacity`, whatever
    /// `destStart` is. Returns true.
    bool CopyData(EventSection& src, int srcStart, int destStart, int count);
    /// As above, without the columns shared with `ref`.
    bool CopyData(EventSection& src, int srcStart, int destStart, int count, EventSection& ref);
    /// As above, without the shared columns.
    bool CopyData(EventSection& src, int srcStart, int destStart, int count, std::vector<bool>& reuse);

    /// Removes `count` events from event `start` on: later ones move down in every column that is not null,
    /// and `Count` falls by `count`. Throws InvalidMemoryException*, with nothing changed, when `count`
    /// exceeds `Count`. Returns true.
    bool RemoveData(int start, int count);
    /// As above, without the columns shared with `ref`.
    bool RemoveData(int start, int count, EventSection& ref);
    /// As above, without the shared columns.
    bool RemoveData(int start, int count, std::vector<bool>& reuse);

    /// The column of signal `s`.
    float* operator[](int s) const;
    /// Sets the value of signal `s` for event `e`.
    void SetValue(int s, int e, float v);
    /// Adds `d` to every value of signal `s`.
    void AddValue(int s, float d);

    /// Inserts a new column before signal `pos`; `pos` may equal `SignalCount`.
    void InsertSignal(int pos);
    /// Inserts column `srcSignal` of `src`, shared, before signal `pos`.
    void InsertSignalRef(int pos, int srcSignal, EventSection& src);
    /// Takes signal `pos` out of the table and returns its column, which must not be null.
    void RemoveSignal(int pos);
    /// Takes signal `pos` out of the table; its column is another section's.
    void RemoveSignalRef(int pos);
    /// Replaces the entry of signal `pos` by column `srcSignal` of `src`; the entry before is not returned.
    void SetShareSignal(int pos, int srcSignal, EventSection& src);

private:
    void CheckEventValue(int signalCount);
};

/// One 16-bit number per event; in screen coordinates 65535 marks an event outside the displayed population.
struct ORVANE_API ModelSection : BaseSection {
    unsigned short* Values = nullptr;  ///< the column; null without storage

    /// Takes a column; its contents are undefined and `Count` stays. Returns true.
    bool Initial();
    /// Returns the column and clears every field.
    void Release();
    /// The number of event `i`.
    unsigned short& operator[](int i) const;
};

/// One bit per event: event `i` is bit `i mod 32`, least significant first, of word `i / 32`.
///
/// Bits at or above `Count` have no meaning and never count, but And, Or and Not work on whole words.
struct ORVANE_API FilterSection : BaseSection {
    int TrueCount = 0;               ///< set bits among the first `Count`, as of the last CalcTrueCount
    std::uint32_t* Flags = nullptr;  ///< the words; null without storage

    /// Takes `Capacity` bits; their values are undefined and `Count` stays. Returns true.
    bool Initial();
    /// Returns the bits and clears every field.
    void Release();
    /// Takes over header and `TrueCount` of `src` and copies `src.Capacity / 8` bytes of bits into this
    /// section's own storage, which must exist.
    void Copy(FilterSection& src);

    /// Reads, or sets or clears, the bit of event `i`.
    bool operator[](int i) const;
    bool GetFlag(int i) const;
    void SetFlag(int i, bool v) const;
    /// Sets or clears bits `start` to `start + count - 1`; nothing when `count` is below 1.
    void SetFlag(int start, int count, bool v);
    /// Sets or clears all `Capacity` bits.
    void SetAll(bool v);

    /// Recounts `TrueCount`.
    void CalcTrueCount();
    /// The number of events up to and including the `k`-th set one; 0 for `k` below 1. With fewer set events
    /// their number is stored in `TrueCount` and `Count` returned.
    int GetCountByTrueCount(int k);

    /// Keeps the bits that `other` has too. Nothing when `other` is this section or differs in `Count`.
    void And(FilterSection& other) const;
    /// Adds the bits of `other`. Nothing when `other` is this section or differs in `Count`.
    void Or(FilterSection& other) const;
    /// Inverts every word that holds one of the first `Count` bits, with the bits above `Count` in the last.
    void Not() const;
};

/// `Count` = `Capacity` counters, for instance the bins of a histogram.
struct ORVANE_API CountSection : BaseSection {
    int* Counts = nullptr;  ///< the counters; null without storage
    int TotalCount = 0;     ///< sum of the first `Count` counters, as of the last CalcTotalCount

    /// Takes the counters, sets `Count` to their number and all of them to 0. Returns true.
    bool Initial();
    /// Returns the counters and clears every field.
    void Release();
    /// Counter `i`.
    int& operator[](int i) const;
    /// Recomputes `TotalCount`, in 32-bit arithmetic.
    void CalcTotalCount();
    /// Scales every counter by the double `1.0 / d`, adds 0.5 and truncates: halves of positive counters
    /// go up.
    void DivValue(int d) const;
};

/// A whole segment of the pool, for raw bytes: `Capacity` and `Count` are in bytes.
struct ORVANE_API SegmentSection : BaseSection {
    void* Data = nullptr;  ///< the segment; null without storage

    /// Takes a segment; its contents are undefined and `Count` stays. Returns true.
    bool Initial();
    /// Returns the segment and clears every field.
    void Release();
};

/// The position of a section in a vector, for the host's own use.
struct SectionIndex {
    int Index = 0;  ///< from 0
};

/// The position of a filter in a vector, for the host's own use.
struct FilterIndex {
    int Index = 0;  ///< from 0
};

}  // namespace Orvane
