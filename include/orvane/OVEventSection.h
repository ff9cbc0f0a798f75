// Operations over event vectors: acquiring, appending, copying, extracting, reading and releasing the events
// of a sample and of its compensated twin.
//
// A sample is a vector of pointers to EventSection records; global event g of the vector is counted across
// the sections in order. The caller owns the vectors, and the records in them, unless a call says that it
// deletes them. A vector is packed when every section but the last holds as many events as fit.
//
// A raw vector and its compensated twin run in parallel: compensated[i] shares with raw[i] the columns that
// compensation leaves unchanged and owns the others. Which is which is told per signal, by reuse flags (true
// = the raw column, shared), by a signal map (-1 = owned, k = column k of the source, shared) or by comparing
// the column pointers with those of the raw section.
#pragma once

#include <vector>

#include <orvane/OVMatrix.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// One buffer of acquired raw events, `channelCount` values per event, events one after another, and how the
/// computed ratio signal is formed from them. Plain data; the buffer is not owned.
struct OVCollectData {
    int* data = nullptr;              ///< the raw values
    int dataCount = 0;                ///< number of values in `data`, not of events
    int channelCount = 0;             ///< values per event; channel `channelCount - 1` is the last one
    int ratioNumeratorChannel = 0;    ///< channel above the line of the ratio signal
    int ratioDenominatorChannel = 0;  ///< channel below the line of the ratio signal
    float numeratorScale = 0.0F;      ///< the numerator channel is divided by this
    float denominatorScale = 0.0F;    ///< the denominator channel is multiplied by this
    float lastChannelOffset = 0.0F;   ///< added to the last channel
};

/// Stateless operations over vectors of event sections. A vector and its sections must be used by one thread
/// at a time. Where storage is taken, OutOfMemoryException* passes with the vectors in the state reached and
/// no record lost, unless stated otherwise.
class ORVANE_API IOVEventSection {
public:
    virtual ~IOVEventSection() = default;

    /// Releases and deletes compensated[i] for every position that `raw` has too, returning the columns that
    /// raw[i] does not share, and empties `compensated`. `raw` stays as it is.
    virtual void ReleaseVectorSectionCompensation(std::vector<EventSection*>& raw,
                                                  std::vector<EventSection*>& compensated) = 0;

    /// Releases and deletes every section, returning the columns whose `map` entry is -1; empties the vector.
    virtual void ReleaseVectorSection(std::vector<EventSection*>& sections, std::vector<int>& map) = 0;

    /// Releases and deletes every section with all of its columns; empties the vector.
    virtual void ReleaseVectorSection(std::vector<EventSection*>& sections) = 0;

    /// Releases and deletes a pair: of compensated[i] the columns that raw[i] does not share, of raw[i] all.
    /// Both vectors are emptied. Records of `compensated` beyond the end of `raw` are dropped, not released.
    virtual void ReleaseVectorSection(std::vector<EventSection*>& raw,
                                      std::vector<EventSection*>& compensated) = 0;

    /// Deletes every record and its column table, returning no column (all are shared); empties the vector.
    virtual void ReleaseVectorSectionShare(std::vector<EventSection*>& sections) = 0;

    /// Appends to `out`, for each event section, a new SignalSection with the same header whose `Values` is
    /// column `signal`, shared. The caller deletes the records and releases no packet of theirs.
    virtual void GetVectorSignalSection(std::vector<EventSection*>& sections, int signal,
                                        std::vector<SignalSection*>& out) = 0;

    /// Brings the compensated twin in step with `raw`: appends missing sections, sets every `Count`, and
    /// makes each column shared or owned as reuse[s] says. A column that becomes owned holds no values yet.
    /// Sections of `compensated` beyond `raw` are left alone. Always true.
    virtual bool SynchronousEventSectionCompensation(std::vector<EventSection*>& compensated,
                                                     std::vector<EventSection*>& raw,
                                                     std::vector<bool>& reuse) = 0;

    /// Appends all events of `source` to the end of `dest`, which may be empty. While `dest` holds at most
    /// `limit` events, each source section starts a section of its own; beyond that the last section is
    /// filled first. A source section spreads over two destination sections at most. False when the storage
    /// of a new section cannot be prepared; what was appended until then stays.
    virtual bool AppendEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                                    int limit) = 0;

    /// The same, always filling the last section first, so that a packed `dest` stays packed.
    virtual bool AppendEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest) = 0;

    /// The same for a compensated twin: `reference` is the raw vector of `dest`, to which the raw events have
    /// been appended already with the same limit. Columns whose flag is true are shared with reference[i] and
    /// not written.
    virtual bool AppendEventSectionCompensation(std::vector<EventSection*>& source,
                                                std::vector<EventSection*>& dest,
                                                std::vector<EventSection*>& reference,
                                                std::vector<bool>& reuse, int limit) = 0;
    virtual bool AppendEventSectionCompensation(std::vector<EventSection*>& source,
                                                std::vector<EventSection*>& dest,
                                                std::vector<EventSection*>& reference,
                                                std::vector<bool>& reuse) = 0;

    /// Makes the vector ready to receive `count` events of `signalCount` signals: cleared where its sections
    /// fit, made anew where they do not. When `count` is below one section's capacity, one section is kept.
    /// Sections that are given up are released, but their records are not deleted; a host that kept pointers
    /// to them may delete them.
    virtual void SynchronousSignalValue(std::vector<EventSection*>& sections, int count, int signalCount) = 0;

    /// Appends new sections until those appended have room for `count` events; none when `count` is below 1.
    virtual void NewEventSection(std::vector<EventSection*>& sections, int count, int signalCount) = 0;

    /// Copies the events of `source` from global event `start` on behind the events of dest[0], dest[1], ….
    /// The part of the first section that is copied goes into dest[0] undivided. `dest` must have enough
    /// sections; none are made. Throws InvalidMemoryException* when that first part does not fit.
    virtual void CopyEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                                  int start) = 0;

    /// Copies the events from global event `start` to the end of its section into `out`, from its beginning,
    /// and returns their number (`out.Count`); 0 when `start` is beyond the last event. When `out` had
    /// another number of signals its table is remade and the caller must supply the columns. Throws
    /// InvalidMemoryException* with `out.Count` 0 when they do not fit.
    virtual int CopyOneEventSection(std::vector<EventSection*>& source, EventSection& out, int start) = 0;

    /// Makes `dest` a copy of `source` whose columns are all shared. Records that `dest` held are deleted,
    /// not released.
    virtual void CopyEventSectionShareSignal(std::vector<EventSection*>& source,
                                             std::vector<EventSection*>& dest) = 0;

    /// Sets reuse[s] to whether the first sections share column s, for every signal of a[0]. Empty when
    /// either vector is.
    virtual void CheckVectorReuseFlag(std::vector<EventSection*>& a, std::vector<EventSection*>& b,
                                      std::vector<bool>& reuse) = 0;

    /// The number of signals of a[0] whose column b[0] does not share; 0 when either vector is empty.
    virtual int CheckNoReuseCount(std::vector<EventSection*>& a, std::vector<EventSection*>& b) = 0;

    /// Removes the first `count` events of a raw vector and its compensated twin. Sections that become empty
    /// are released and deleted, except the last one when `count` is exactly the number of events. Nothing
    /// happens when `count` is below 1 or either vector is empty.
    virtual void RemoveEventSection(int count, std::vector<EventSection*>& raw,
                                    std::vector<EventSection*>& compensated) = 0;

    /// The number of events, formed in 32 bits.
    virtual long GetTotalCount(std::vector<EventSection*>& sections) = 0;

    /// Sets `Count`, `Tag1` and `Tag2` of every section to 0; the columns stay.
    virtual void ClearVectorSection(std::vector<EventSection*>& sections) = 0;

    /// Element 0 of column `signal` of the first section, whether or not it holds an event; 0.0 for an empty
    /// vector.
    virtual float GetFirstValue(std::vector<EventSection*>& sections, int signal) = 0;

    /// The value of the last event; 0.0 when there is none. Empty sections at the end are skipped.
    virtual float GetLastValue(std::vector<EventSection*>& sections, int signal) = 0;

    /// The value of global event `index`; 0.0 for a negative index and beyond the last event.
    virtual float GetValue(std::vector<EventSection*>& sections, int signal, int index) = 0;

    /// The section in which writing continues behind `current`, emptied: the first one when `current` is
    /// null, else the one behind it, made and appended when there is none. Where the `Index` of `current` is
    /// not its position, all sections are renumbered. Throws InvalidParameterException* when `current` is not
    /// in the vector; on OutOfMemoryException* the vector keeps its sections.
    virtual EventSection* GetNextSection(std::vector<EventSection*>& sections, int signalCount,
                                         EventSection* current) = 0;

    /// Keeps the first `limit` events (at least 0) by lowering `Count`; no storage is returned.
    virtual void SetCountLimit(std::vector<EventSection*>& sections, long limit) = 0;

    /// Appends to `out`, for each source section, a new section with the same `Count` whose column s is
    /// column map[s] of the source, shared, or for -1 an owned one without values. On OutOfMemoryException*
    /// every record in `out`, also those of earlier calls, is released with `map` and deleted, and `out` is
    /// emptied. Always true.
    virtual bool InitVectorEventSectionData(std::vector<EventSection*>& out,
                                            std::vector<EventSection*>& source, std::vector<int>& map) = 0;

    /// The same as InitVectorEventSectionData.
    virtual void ExtractEventSection(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                                     std::vector<int>& map) = 0;

    /// Appends to `out` new sections with the events whose bit in `filter` (parallel to `source`) is set, in
    /// order and packed; column t holds signal signals[t]. At least one section is appended, and one more as
    /// soon as the last is full, so the last one may be empty.
    virtual void ExtractEventSection(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                                     std::vector<FilterSection*>& filter, std::vector<int>& signals) = 0;

    /// The largest and the smallest value of `signal`; NaN is neither. Both are 0.0 without events.
    virtual void GetValueMaxAndMin(std::vector<EventSection*>& sections, int signal, float& max,
                                   float& min) = 0;

    /// Writes to `dest` every event's row of values times `matrix` (n × n for n signals): value j is the sum
    /// over k of value[k] × matrix(k, j), in double, narrowed to float. `source` must be packed; events for
    /// which the prepared `dest` has no section are not written. `dest` is made ready with
    /// SynchronousSignalValue. Throws the text "Matrix dimensions do not match." (`const char*`) when there
    /// are events and `matrix` has another number of rows.
    virtual void VectorEventSection_Multi_Matrix(std::vector<EventSection*>& source, const OVMatrix& matrix,
                                                 std::vector<EventSection*>& dest) = 0;

    /// target = numerator / denominator × scale in float, for every event; 1.0 where the denominator is zero
    /// of either sign. `target` may be one of the other two.
    virtual void CalcWidthSignalValue(std::vector<EventSection*>& sections, int numerator, int denominator,
                                      int target, float scale) = 0;

    /// Adds `value` to every event's value of `signal`.
    virtual void SignalValueAddValue(std::vector<EventSection*>& sections, int signal, float value) = 0;

    /// Turns an acquisition buffer into events, written from the first section on. Signal s comes from
    /// channel channelMap[s] of the buffer:
    ///   even channel below the last   gain × raw + (a random number of tenths below the gain)
    ///   odd channel below the last    raw / gain + (a random number of tenths below one)
    ///   last channel                  raw + lastChannelOffset
    ///   -1                            numerator / numeratorScale / (denominator × denominatorScale) × 1024,
    ///                                 or 1.0 where the product below the line is zero
    ///   anything else                 not written
    /// in float, s-th gain for the s-th signal; the random tenths keep plots of integer data free of stripes.
    /// They are drawn with rand(), signal by signal within event by event, and each call seeds the generator
    /// with the time in seconds. A further section is taken when an event finds the last one full.
    ///
    /// A gain of an even channel must be at least 0.1. When `dataCount` is no multiple of `channelCount`, the
    /// rest counts as one more event, and its missing values are read from behind `dataCount`: the caller's
    /// buffer must reach to the end of that event. No events are written when either count is below 1.
    virtual void DealEvent(std::vector<EventSection*>& sections, std::vector<int>& channelMap,
                           std::vector<float>& gains, OVCollectData& data) = 0;

    /// True when both vectors have the same number of sections with the same `Count`, the same number of
    /// signals and equal values. A NaN is equal to nothing.
    virtual bool CheckValueEqual(std::vector<EventSection*>& a, std::vector<EventSection*>& b) = 0;
};

/// The operations of IOVEventSection. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVEventSection : public IOVEventSection {
public:
    void ReleaseVectorSectionCompensation(std::vector<EventSection*>& raw,
                                          std::vector<EventSection*>& compensated) override;
    void ReleaseVectorSection(std::vector<EventSection*>& sections, std::vector<int>& map) override;
    void ReleaseVectorSection(std::vector<EventSection*>& sections) override;
    void ReleaseVectorSection(std::vector<EventSection*>& raw,
                              std::vector<EventSection*>& compensated) override;
    void ReleaseVectorSectionShare(std::vector<EventSection*>& sections) override;
    void GetVectorSignalSection(std::vector<EventSection*>& sections, int signal,
                                std::vector<SignalSection*>& out) override;
    bool SynchronousEventSectionCompensation(std::vector<EventSection*>& compensated,
                                             std::vector<EventSection*>& raw,
                                             std::vector<bool>& reuse) override;
    bool AppendEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                            int limit) override;
    bool AppendEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest) override;
    bool AppendEventSectionCompensation(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                                        std::vector<EventSection*>& reference, std::vector<bool>& reuse,
                                        int limit) override;
    bool AppendEventSectionCompensation(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                                        std::vector<EventSection*>& reference,
                                        std::vector<bool>& reuse) override;
    void SynchronousSignalValue(std::vector<EventSection*>& sections, int count, int signalCount) override;
    void NewEventSection(std::vector<EventSection*>& sections, int count, int signalCount) override;
    void CopyEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                          int start) override;
    int CopyOneEventSection(std::vector<EventSection*>& source, EventSection& out, int start) override;
    void CopyEventSectionShareSignal(std::vector<EventSection*>& source,
                                     std::vector<EventSection*>& dest) override;
    void CheckVectorReuseFlag(std::vector<EventSection*>& a, std::vector<EventSection*>& b,
                              std::vector<bool>& reuse) override;
    int CheckNoReuseCount(std::vector<EventSection*>& a, std::vector<EventSection*>& b) override;
    void RemoveEventSection(int count, std::vector<EventSection*>& raw,
                            std::vector<EventSection*>& compensated) override;
    long GetTotalCount(std::vector<EventSection*>& sections) override;
    void ClearVectorSection(std::vector<EventSection*>& sections) override;
    float GetFirstValue(std::vector<EventSection*>& sections, int signal) override;
    float GetLastValue(std::vector<EventSection*>& sections, int signal) override;
    float GetValue(std::vector<EventSection*>& sections, int signal, int index) override;
    EventSection* GetNextSection(std::vector<EventSection*>& sections, int signalCount,
                                 EventSection* current) override;
    void SetCountLimit(std::vector<EventSection*>& sections, long limit) override;
    bool InitVectorEventSectionData(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                                    std::vector<int>& map) override;
    void ExtractEventSection(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                             std::vector<int>& map) override;
    void ExtractEventSection(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                             std::vector<FilterSection*>& filter, std::vector<int>& signals) override;
    void GetValueMaxAndMin(std::vector<EventSection*>& sections, int signal, float& max, float& min) override;
    void VectorEventSection_Multi_Matrix(std::vector<EventSection*>& source, const OVMatrix& matrix,
                                         std::vector<EventSection*>& dest) override;
    void CalcWidthSignalValue(std::vector<EventSection*>& sections, int numerator, int denominator,
                              int target, float scale) override;
    void SignalValueAddValue(std::vector<EventSection*>& sections, int signal, float value) override;
    void DealEvent(std::vector<EventSection*>& sections, std::vector<int>& channelMap,
                   std::vector<float>& gains, OVCollectData& data) override;
    bool CheckValueEqual(std::vector<EventSection*>& a, std::vector<EventSection*>& b) override;
};

}  // namespace Orvane
