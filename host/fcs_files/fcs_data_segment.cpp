#include "fcs_files/fcs_data_segment.h"

#include <algorithm>
#include <optional>
#include <string>

#include "fcs_files/ascii_values.h"
#include "text/numbers.h"

namespace Host {
namespace {

using Source = DataSegment::Source;

const char* BeginName(Source source) {
    return source == Source::Header ? "HEADER begin of DATA" : "$BEGINDATA";
}
const char* EndName(Source source) {
    return source == Source::Header ? "HEADER end of DATA" : "$ENDDATA";
}

/// One of the two statements of where DATA is.
struct Place {
    Source source;
    Offsets offsets;

    bool HasEnd() const { return offsets.end != 0 && offsets.end != Header::EightNines; }
    bool HasBegin() const {
        return offsets.begin != 0 && !(source == Source::Header && offsets.begin == Header::EightNines);
    }
};

class Locator {
public:
    Locator(InputFile& file, const Header& header, const Keywords& keywords, const EventLayout& layout,
            Findings& findings)
        : file_(file),
          header_(header),
          layout_(layout),
          findings_(findings),
          expected_(keywords.FindUnsigned("$TOT")),
          inHeader_{Source::Header, header.data},
          inText_{Source::Text, KeywordOffsets(keywords, "DATA")} {
        if (!expected_ && header.version != "FCS2.0") {
            findings.Warn({"$TOT", std::nullopt, "the number of events"},
                          "the events that DATA holds are read");
        }
    }

    DataSegment Locate() {
        DataSegment segment{inHeader_.offsets, inText_.offsets, Source::Header, 0, 0, 0};
        const std::optional<Place> place = Choose();
        if (!place) return segment;
        segment.source = place->source;
        segment.begin = place->offsets.begin;
        segment.length = UsableLength(*place);
        CountEvents(*place, segment);
        return segment;
    }

private:
    /// None when there are no events to look for.
    std::optional<Place> Choose() {
        const bool header = inHeader_.HasBegin();
        const bool text = inText_.HasBegin();
        if (!header && !text) {
            if (expected_ == 0U) return std::nullopt;
            Refuse(BeginName(Source::Header), std::to_string(header_.data.begin),
                   "the place of DATA there or in $BEGINDATA");
        }
        if (header && text && !(inHeader_.offsets == inText_.offsets)) return ChooseBetween();
        return Checked(header ? inHeader_ : inText_);
    }

    /// Of two that differ, the one that is possible and fits $TOT best; HEADER when there is nothing to
    /// choose.
    Place ChooseBetween() {
        const bool takeText = Fitness(inText_) > Fitness(inHeader_);
        const Place& chosen = takeText ? inText_ : inHeader_;
        // A file of more than 99 999 999 bytes may have an end that HEADER cannot say.
        if (inHeader_.HasEnd() || inHeader_.offsets.begin != inText_.offsets.begin) {
            findings_.Warn({"HEADER begin and end of DATA", ToText(inHeader_.offsets),
                            ToText(inText_.offsets) + " as in $BEGINDATA and $ENDDATA"},
                           std::string("DATA is read where ") + (takeText ? "TEXT" : "HEADER") + " says");
        }
        return Checked(chosen);
    }

    int Fitness(const Place& place) {
        if (!IsPossible(place)) return 0;
        if (!place.HasEnd() || place.offsets.end < place.offsets.begin) return 1;
        if (!expected_ || layout_.freeFormat) return 2;
        const std::uint64_t length = place.offsets.end - place.offsets.begin + 1;
        const bool fits = length / layout_.EventBytes() == *expected_ && length % layout_.EventBytes() == 0;
        return fits ? 3 : 2;
    }

    bool OverlapsText(std::uint64_t begin) const {
        return begin < Header::Size || (begin >= header_.text.begin && begin <= header_.text.end);
    }

    bool IsPossible(const Place& place) const {
        return place.offsets.begin < file_.Size() && !OverlapsText(place.offsets.begin);
    }

    Place Checked(const Place& place) const {
        if (OverlapsText(place.offsets.begin)) {
            Refuse(BeginName(place.source), std::to_string(place.offsets.begin),
                   "a byte outside HEADER and TEXT, " + ToText(header_.text));
        }
        if (place.offsets.begin >= file_.Size() && expected_ != 0U) {
            Refuse(BeginName(place.source), std::to_string(place.offsets.begin),
                   "a byte of the file, below " + std::to_string(file_.Size()));
        }
        return place;
    }

    /// The bytes from the begin to the stated end, or as far as they can reach where that is impossible: to
    /// TEXT, if it stands behind, or to the end of the file.
    std::uint64_t UsableLength(const Place& place) {
        const std::uint64_t begin = place.offsets.begin;
        const std::uint64_t limit = begin < header_.text.begin ? header_.text.begin : file_.Size();
        const std::uint64_t available = limit - std::min(begin, limit);
        const std::uint64_t end = place.offsets.end;
        if (place.HasEnd() && end >= begin && end - begin < available) return end - begin + 1;
        if (place.HasEnd() && end + 1 == begin) return 0;
        if (available != 0) {
            findings_.Warn({EndName(place.source), std::to_string(end),
                            "a byte from " + std::to_string(begin) + " to " + std::to_string(limit - 1)},
                           "DATA is read up to there");
            endIsKnown_ = false;
        }
        return available;
    }

    void CountEvents(const Place& place, DataSegment& segment) {
        if (layout_.freeFormat) {
            const std::uint64_t values = CountFreeFormatValues(file_, segment.begin, segment.length);
            segment.events = Reconcile(values / layout_.parameters.size());
            WarnOfRest(place, values % layout_.parameters.size(), " values are left out");
            return;
        }
        const std::uint64_t eventBytes = layout_.EventBytes();
        AddBytesBehindEnd(place, segment);
        segment.events = Reconcile(segment.length / eventBytes);
        WarnOfRest(place, segment.length % eventBytes, " bytes are left out");
        segment.length = segment.events * eventBytes;
    }

    void WarnOfRest(const Place& place, std::uint64_t rest, const char* leftOut) {
        if (rest == 0 || !endIsKnown_) return;
        findings_.Warn(
            {EndName(place.source), std::to_string(place.offsets.end), "an end at a whole number of events"},
            "the last " + std::to_string(rest) + leftOut);
    }

    /// An end that cuts into the last of the $TOT events is one that was miscounted.
    void AddBytesBehindEnd(const Place& place, DataSegment& segment) {
        const std::uint64_t eventBytes = layout_.EventBytes();
        const std::uint64_t rest = segment.length % eventBytes;
        const std::uint64_t missing = eventBytes - rest;
        if (rest == 0 || !expected_ || *expected_ != segment.length / eventBytes + 1) return;
        if (segment.begin + segment.length + missing > file_.Size()) return;
        const std::string end = std::to_string(segment.begin + segment.length + missing - 1);
        findings_.Warn(
            {EndName(place.source), std::to_string(place.offsets.end), end + ", the end of $TOT events"},
            "DATA is read up to there");
        segment.length += missing;
    }

    /// The events to read of those that DATA holds.
    std::uint64_t Reconcile(std::uint64_t held) {
        if (!expected_ || *expected_ == held || (*expected_ < held && !endIsKnown_)) {
            return expected_.value_or(held);
        }
        const std::string number = std::to_string(held);
        const std::uint64_t events = std::min(*expected_, held);
        findings_.Warn({"$TOT", std::to_string(*expected_), number + ", the whole events that DATA holds"},
                       (events == 0 ? "no" : "the first " + std::to_string(events)) + " events are read");
        return events;
    }

    InputFile& file_;
    const Header& header_;
    const EventLayout& layout_;
    Findings& findings_;
    std::optional<std::uint64_t> expected_;  ///< $TOT
    Place inHeader_;
    Place inText_;
    bool endIsKnown_ = true;
};

}  // namespace

DataSegment LocateData(InputFile& file, const Header& header, const Keywords& keywords,
                       const EventLayout& layout, Findings& findings) {
    return Locator(file, header, keywords, layout, findings).Locate();
}

}  // namespace Host
