// The DATA segment of FCS files (list mode; data types I, F, D and A; either byte order), from raw bytes into
// event columns and back. Opening files, the HEADER and the TEXT segment are the host's.
//
// Raw data are event-major: the values of one event stand one after another in parameter order, and events
// follow each other without gaps. They are cut into segments at whole events. In a SegmentSection, `Count` is
// the length of the raw data in bytes, `Tag1` the index of its first event and `Tag2` the index after its
// last.
#pragma once

#include <vector>

#include <orvane/OVFCSPara.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Converts between raw segments and an event section. Vectors, records, columns and buffers are the
/// caller's; nothing but them is written, and nothing is thrown. While logarithmic integers are read, the
/// pool may lend a column for each scale of theirs, so that its handler can be asked for memory; without one
/// they only take longer. A missing `IntParFormat` for integers or ASCII, columns too short for the events
/// and buffers too small for the bytes are not detected.
class ORVANE_API IOVFCSWriteRead {
public:
    virtual ~IOVFCSWriteRead() = default;

    /// Splits the events evenly over `segments`, the last of which takes the remainder, and writes their raw
    /// bytes. Sets `Tag1`, `Tag2` and `Count` of each segment; its `Data` must hold its share of events times
    /// `ByteWidth` times `ParCount` bytes.
    ///
    /// Integers: a value below `Offset` gives 0. Any other is multiplied by `LogScale` and replaced by its
    /// base-10 logarithm where `IsLog`, multiplied by `Scale`, and cut to 0 .. `Range` - 1: at or above
    /// `Range` that is `Range` - 1 truncated, otherwise the value is truncated toward zero, never rounded.
    /// NaN gives 0. Floats are copied bit by bit, doubles widened. Nothing at all happens when `Mode` is not
    /// 0 or there is no segment; ASCII, unknown data types, and floats without a column table set `Tag1` and
    /// `Tag2` only.
    virtual void WriteFCSData(std::vector<SegmentSection*>& segments, EventSection& events,
                              OVFCSPara& para) = 0;

    /// Reads the raw bytes of `segments`, one after another, into the columns of `events`, which must be at
    /// least `ParCount` and long enough. Sets `Count` of `events`, and `Tag1` and `Tag2` of each segment,
    /// whose `Count` and `Data` the caller has set. An incomplete event at the end of a segment is dropped,
    /// and the next segment follows without a gap.
    ///
    /// Integers, unsigned and unmasked, and ASCII numbers, `ByteWidth` characters each, become raw * `Scale`,
    /// or 10^(raw * `Scale`) * `Offset` where `IsLog`, formed in double. Floats are copied bit by bit,
    /// doubles narrowed to the nearest float. Characters that are no digits give a wrong number, not an
    /// error. Nothing at all happens when `Mode` is not 0; an unknown data type sets the counts only. Without
    /// segments, or with a `ByteWidth` times `ParCount` that is not positive, there are no events.
    virtual void ReadFCSData(EventSection& events, std::vector<SegmentSection*>& segments,
                             OVFCSPara& para) = 0;

private:
    virtual void WriteFCSData_Double(std::vector<SegmentSection*>& segments, EventSection& events,
                                     OVFCSPara& para) = 0;
    virtual void WriteFCSData_Float(std::vector<SegmentSection*>& segments, EventSection& events,
                                    OVFCSPara& para) = 0;
    virtual void WriteFCSData_Int32(std::vector<SegmentSection*>& segments, EventSection& events,
                                    OVFCSPara& para) = 0;
    virtual void WriteFCSData_Int16(std::vector<SegmentSection*>& segments, EventSection& events,
                                    OVFCSPara& para) = 0;
    virtual void ReadFCSData_Double(EventSection& events, std::vector<SegmentSection*>& segments,
                                    OVFCSPara& para) = 0;
    virtual void ReadFCSData_Float(EventSection& events, std::vector<SegmentSection*>& segments,
                                   OVFCSPara& para) = 0;
    virtual void ReadFCSData_Int32(EventSection& events, std::vector<SegmentSection*>& segments,
                                   OVFCSPara& para) = 0;
    virtual void ReadFCSData_Int16(EventSection& events, std::vector<SegmentSection*>& segments,
                                   OVFCSPara& para) = 0;
    virtual void ReadFCSData_ASCII(EventSection& events, std::vector<SegmentSection*>& segments,
                                   OVFCSPara& para) = 0;

    /// Gives every segment its range of events by dividing their number, for writing.
    virtual void CalcSegmentIndexByCount(std::vector<SegmentSection*>& segments, EventSection& events) = 0;
    /// Gives every segment its range of events by its length in bytes, and `events` its count, for reading.
    virtual void CalcSegmentIndexByLength(std::vector<SegmentSection*>& segments, EventSection& events,
                                          OVFCSPara& para) = 0;
};

/// The conversions of IOVFCSWriteRead. An object holds nothing; make one wherever it is needed. The float
/// conversions of large segments are split over the threads of the process's OpenMP pool.
class ORVANE_API OVFCSWriteRead : public IOVFCSWriteRead {
public:
    void WriteFCSData(std::vector<SegmentSection*>& segments, EventSection& events, OVFCSPara& para) override;
    void ReadFCSData(EventSection& events, std::vector<SegmentSection*>& segments, OVFCSPara& para) override;

private:
    void WriteFCSData_Double(std::vector<SegmentSection*>& segments, EventSection& events,
                             OVFCSPara& para) override;
    void WriteFCSData_Float(std::vector<SegmentSection*>& segments, EventSection& events,
                            OVFCSPara& para) override;
    void WriteFCSData_Int32(std::vector<SegmentSection*>& segments, EventSection& events,
                            OVFCSPara& para) override;
    void WriteFCSData_Int16(std::vector<SegmentSection*>& segments, EventSection& events,
                            OVFCSPara& para) override;
    void ReadFCSData_Double(EventSection& events, std::vector<SegmentSection*>& segments,
                            OVFCSPara& para) override;
    void ReadFCSData_Float(EventSection& events, std::vector<SegmentSection*>& segments,
                           OVFCSPara& para) override;
    void ReadFCSData_Int32(EventSection& events, std::vector<SegmentSection*>& segments,
                           OVFCSPara& para) override;
    void ReadFCSData_Int16(EventSection& events, std::vector<SegmentSection*>& segments,
                           OVFCSPara& para) override;
    void ReadFCSData_ASCII(EventSection& events, std::vector<SegmentSection*>& segments,
                           OVFCSPara& para) override;

    void CalcSegmentIndexByCount(std::vector<SegmentSection*>& segments, EventSection& events) override;
    void CalcSegmentIndexByLength(std::vector<SegmentSection*>& segments, EventSection& events,
                                  OVFCSPara& para) override;

    /// The number that the first `length` characters read as; 0 for none.
    int StringToInt(char* text, int length);
};

}  // namespace Orvane
