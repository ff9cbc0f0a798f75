#include "fcs_files/fcs_text_writer.h"

#include <algorithm>
#include <string_view>

#include "text/display.h"

namespace Host {
namespace {

/// In order of preference.
constexpr std::string_view Delimiters = "|/\\!~^#*;\f\x1e";

/// How badly a delimiter suits the pairs: how often it has to be doubled, and far worse, how often readers
/// could take it for an end.
std::size_t Harm(const std::vector<Keyword>& pairs, char delimiter) {
    constexpr std::size_t Ambiguous = 1U << 20U;
    std::size_t harm = 0;
    for (const auto& [name, value] : pairs) {
        harm += static_cast<std::size_t>(std::count(value.begin(), value.end(), delimiter));
        if (value.starts_with(delimiter) || name.find(delimiter) != std::string::npos) harm += Ambiguous;
    }
    return harm;
}

char ChooseDelimiter(const std::vector<Keyword>& pairs) {
    return *std::min_element(Delimiters.begin(), Delimiters.end(),
                             [&](char a, char b) { return Harm(pairs, a) < Harm(pairs, b); });
}

void AppendToken(std::string& text, const std::string& token, char delimiter) {
    if (token.empty() || token[0] == delimiter) text += ' ';
    for (const char c : token)
        text.append(c == delimiter ? 2 : 1, c);
    text += delimiter;
}

}  // namespace

std::string FormatText(const std::vector<Keyword>& pairs) {
    const char delimiter = ChooseDelimiter(pairs);
    std::string text(1, delimiter);
    for (const auto& [name, value] : pairs) {
        AppendToken(text, ToUtf8(name), delimiter);
        AppendToken(text, ToUtf8(value), delimiter);
    }
    return text;
}

}  // namespace Host
