// TEXT, the segments of keywords and values.
//
// The first byte is the delimiter; it stands after every keyword and every value, and twice where it belongs
// to one of them, which is why neither may be empty. Some writers leave values empty all the same, and then
// two delimiters in a row mean something else. The standard's reading is taken unless it cannot be right and
// the other one can.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fcs_files/fcs_header.h"
#include "files/findings.h"

namespace Host {

struct Keyword {
    std::string name;  ///< as its writer spelled it
    std::string value;
};

/// Keywords are compared in upper case.
std::string UpperCase(std::string_view text);

/// The keywords of a data set. Keywords are compared without regard to case; values are bytes.
class Keywords {
public:
    /// Adds a pair unless the keyword, as its writer spelled it, is there already: then the value that was
    /// first stays, and another value is warned of.
    void Add(std::string_view keyword, std::string value, Findings& findings);

    /// The value of an upper-case keyword, or null.
    const std::string* Find(std::string_view keyword) const;

    /// The whole number that a keyword holds; none when the keyword is missing. Throws Refusal for anything
    /// else.
    std::optional<std::uint64_t> FindUnsigned(std::string_view keyword) const;

    std::size_t Count() const { return list_.size(); }

    /// All of them, in the order of the file.
    const std::vector<Keyword>& List() const { return list_; }

private:
    std::vector<Keyword> list_;
    std::map<std::string, std::size_t, std::less<>> places_;  ///< by upper-case name
};

/// Adds the pairs of one segment, which `where` names in messages. Throws Refusal when it cannot be read.
void ParseText(std::string_view segment, const std::string& where, Keywords& keywords, Findings& findings);

/// The keywords of the data set at byte `start`, those of its supplemental TEXT included.
Keywords ReadKeywords(InputFile& file, std::uint64_t start, const Header& header, Findings& findings);

/// The segment that a pair of keywords such as $BEGINDATA and $ENDDATA names, 0 and 0 when they are missing.
Offsets KeywordOffsets(const Keywords& keywords, std::string_view segment);

}  // namespace Host
