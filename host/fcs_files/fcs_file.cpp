#include "fcs_files/fcs_file.h"

#include <utility>

#include "text/numbers.h"

namespace Host {
namespace {

/// Follows $NEXTDATA from one data set to the next. Each must begin behind the TEXT of the one before, so
/// that the walk ends and no byte is read twice.
class DataSetWalk {
public:
    DataSetWalk(InputFile& file, const Header& header, const Keywords& keywords)
        : file_(file), textEnd_(header.text.end), next_(NextOffset(keywords)) {}

    /// Whether $NEXTDATA says that another data set follows.
    bool Announced() const { return next_ && *next_ != 0; }

    /// Goes to it. Returns whether a data set is there.
    bool Advance() {
        if (*next_ <= textEnd_ || *next_ >= file_.Size() - start_) return false;
        try {
            Findings ignored(false);
            start_ += *next_;
            const Header header = ReadHeader(file_, start_, ignored);
            textEnd_ = header.text.end;
            next_ = NextOffset(ReadKeywords(file_, start_, header, ignored));
            return true;
        } catch (const Refusal&) {
            return false;
        }
    }

private:
    static std::optional<std::uint64_t> NextOffset(const Keywords& keywords) {
        const std::string* value = keywords.Find("$NEXTDATA");
        return value == nullptr ? 0 : ParseUnsigned(*value);
    }

    InputFile& file_;
    std::uint64_t start_ = 0;
    std::uint64_t textEnd_;
    std::optional<std::uint64_t> next_;
};

void WarnOfMoreDataSets(InputFile& file, const Header& header, const Keywords& keywords, Findings& findings) {
    const std::string* value = keywords.Find("$NEXTDATA");
    DataSetWalk walk(file, header, keywords);
    if (value == nullptr || Trim(*value).empty()) return;
    std::uint64_t more = 0;
    bool good = ParseUnsigned(*value).has_value();
    while (good && walk.Announced()) {
        good = walk.Advance();
        if (good) ++more;
    }
    const std::string unreadable = good ? "" : ", then something that is none";
    if (more != 0) {
        findings.Warn({"$NEXTDATA", *value, "0, a single data set"},
                      "the first is read; " + std::to_string(more) + " more " +
                          (more == 1 ? "follows" : "follow") + unreadable);
    } else if (!good) {
        findings.Warn({"$NEXTDATA", *value, "0 or the place of another data set"}, "there is none");
    }
}

}  // namespace

FcsFile OpenFcsFile(const std::string& path, Findings& findings) {
    InputFile bytes(path);
    Header header = ReadHeader(bytes, 0, findings);
    Keywords keywords = ReadKeywords(bytes, 0, header, findings);
    EventLayout layout = ReadLayout(header, keywords, findings);
    const DataSegment data = LocateData(bytes, header, keywords, layout, findings);
    std::optional<Spillover> spillover = ReadSpillover(keywords, layout, findings);
    WarnOfMoreDataSets(bytes, header, keywords, findings);
    bytes.Close();
    return {std::move(bytes),    std::move(header), std::move(keywords), std::move(layout), data,
            std::move(spillover)};
}

}  // namespace Host
