#include "fcs_files/fcs_text.h"

#include <cctype>
#include <utility>

#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

/// A segment cut at its delimiters: keywords at even places, values at odd ones.
struct Tokens {
    std::vector<std::string> list;
    bool closed = false;  ///< whether a delimiter stood behind the last one
};

/// What is left behind the last delimiter: padding, or a token that is not closed.
void FinishTokens(Tokens& tokens, std::string rest) {
    tokens.closed = Trim(rest).empty();
    if (!tokens.closed) tokens.list.push_back(std::move(rest));
}

/// A doubled delimiter is one delimiter inside a token.
Tokens SplitByStandard(std::string_view text, char delimiter) {
    Tokens tokens;
    std::string token;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != delimiter) {
            token += text[i];
        } else if (i + 1 < text.size() && text[i + 1] == delimiter) {
            token += text[i++];
        } else {
            tokens.list.push_back(std::exchange(token, {}));
        }
    }
    FinishTokens(tokens, std::move(token));
    return tokens;
}

/// Every delimiter ends a token, and values may be empty. None when a keyword would be, too.
std::optional<Tokens> SplitWithEmptyValues(std::string_view text, char delimiter) {
    Tokens tokens;
    std::size_t begin = 0;
    for (std::size_t end = text.find(delimiter); end != std::string_view::npos;
         end = text.find(delimiter, begin)) {
        if (end == begin && tokens.list.size() % 2 == 0) return std::nullopt;
        tokens.list.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    FinishTokens(tokens, std::string(text.substr(begin)));
    return tokens;
}

bool IsReserved(std::string_view keyword) {
    const std::string upper = UpperCase(keyword);
    return upper.starts_with('$') || upper == "SPILL" || upper == "SPILLOVER";
}

/// Whether a keyword looks like one that an empty value has fused with the next: no reserved keyword has a
/// delimiter in it.
bool IsFused(std::string_view keyword, char delimiter) {
    const std::size_t first = keyword.find(delimiter);
    if (first == std::string_view::npos) return false;
    return IsReserved(keyword.substr(0, first)) || IsReserved(keyword.substr(keyword.rfind(delimiter) + 1));
}

bool IsSound(const Tokens& tokens, char delimiter) {
    if (!tokens.closed || tokens.list.empty() || tokens.list.size() % 2 != 0) return false;
    for (std::size_t i = 0; i < tokens.list.size(); i += 2) {
        if (Trim(tokens.list[i]).empty() || IsFused(tokens.list[i], delimiter)) return false;
    }
    return true;
}

/// A last keyword without a value, or a last value without its delimiter: the pairs before it are good.
void RepairEnd(Tokens& tokens, const std::string& where, Findings& findings) {
    if (tokens.list.size() % 2 != 0) {
        findings.Warn({where + " end", tokens.list.back(), "a value behind the last keyword"},
                      "that keyword is left out");
        tokens.list.pop_back();
    } else if (!tokens.closed) {
        findings.Warn({where + " end", tokens.list.back(), "a delimiter behind the last value"},
                      "the value is taken as it stands");
    }
}

Tokens Split(std::string_view text, char delimiter, const std::string& where, Findings& findings) {
    Tokens tokens = SplitByStandard(text, delimiter);
    if (IsSound(tokens, delimiter)) return tokens;
    std::optional<Tokens> others = SplitWithEmptyValues(text, delimiter);
    if (others && IsSound(*others, delimiter)) {
        findings.Warn({where, std::string(2, delimiter), "no empty values"},
                      "two delimiters in a row are read as an empty value");
        return *std::move(others);
    }
    RepairEnd(tokens, where, findings);
    return tokens;
}

bool CanDelimit(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0 && byte < 127 && std::isalnum(byte) == 0 && c != '$' && c != ' ';
}

void ReadSupplementalText(InputFile& file, std::uint64_t start, const Header& header, Keywords& keywords,
                          Findings& findings) {
    const Offsets place = KeywordOffsets(keywords, "STEXT");
    if (place == Offsets{}) return;
    if (place == header.text) {
        findings.Warn({"$BEGINSTEXT", std::to_string(place.begin), "a segment other than the primary TEXT"},
                      "there is no supplemental TEXT");
        return;
    }
    if (place.begin < Header::Size || place.end <= place.begin || place.end >= file.Size() - start ||
        place.end - place.begin > Header::EightNines) {
        findings.Warn(
            {"$BEGINSTEXT, $ENDSTEXT", ToText(place),
             "a segment inside the file of at most " + std::to_string(Header::EightNines) + " bytes"},
            "the supplemental TEXT is left out");
        return;
    }
    const std::string segment = file.ReadText(start + place.begin, place.end - place.begin + 1);
    ParseText(segment, "supplemental TEXT", keywords, findings);
}

}  // namespace

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

void Keywords::Add(std::string_view keyword, std::string value, Findings& findings) {
    const auto [place, added] = places_.try_emplace(UpperCase(keyword), list_.size());
    if (added) {
        list_.push_back({std::string(keyword), std::move(value)});
        return;
    }
    const std::string& first = list_[place->second].value;
    if (first == value) return;
    findings.Warn({std::string(keyword), value, "one value, \"" + Excerpt(first) + "\""},
                  "the first is used");
}

const std::string* Keywords::Find(std::string_view keyword) const {
    const auto place = places_.find(keyword);
    return place == places_.end() ? nullptr : &list_[place->second].value;
}

std::optional<std::uint64_t> Keywords::FindUnsigned(std::string_view keyword) const {
    const std::string* value = Find(keyword);
    if (value == nullptr) return std::nullopt;
    const auto number = ParseUnsigned(*value);
    if (!number) Refuse(std::string(keyword), *value, "a whole number");
    return number;
}

void ParseText(std::string_view segment, const std::string& where, Keywords& keywords, Findings& findings) {
    const char delimiter = segment.empty() ? '\0' : segment[0];
    if (!CanDelimit(delimiter)) {
        Refuse(where + " delimiter", segment.substr(0, 1), "a character that no keyword begins with");
    }
    Tokens tokens = Split(segment.substr(1), delimiter, where, findings);
    for (std::size_t i = 0; i + 1 < tokens.list.size(); i += 2) {
        keywords.Add(Trim(tokens.list[i]), std::move(tokens.list[i + 1]), findings);
    }
}

Keywords ReadKeywords(InputFile& file, std::uint64_t start, const Header& header, Findings& findings) {
    Keywords keywords;
    const std::string segment =
        file.ReadText(start + header.text.begin, header.text.end - header.text.begin + 1);
    ParseText(segment, "TEXT", keywords, findings);
    ReadSupplementalText(file, start, header, keywords, findings);
    return keywords;
}

Offsets KeywordOffsets(const Keywords& keywords, std::string_view segment) {
    const std::string name(segment);
    return {keywords.FindUnsigned("$BEGIN" + name).value_or(0),
            keywords.FindUnsigned("$END" + name).value_or(0)};
}

}  // namespace Host
