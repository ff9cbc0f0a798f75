#include "fcs_files/fcs_spillover.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "fcs_files/parameter_names.h"
#include "text/numbers.h"

namespace Host {
namespace {

constexpr std::array<const char*, 5> KeywordsInOrder = {"$SPILLOVER", "SPILL", "SPILLOVER", "$COMP", "COMP"};

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

/// "n,name1,..,name n,m11,m12,.." or "n,m11,m12,..": none unless there are exactly the names and numbers that
/// n asks for.
std::optional<Spillover> Parse(const std::string& keyword, std::string_view text, const EventLayout& layout) {
    const std::vector<std::string_view> parts = SplitAtCommas(text);
    const auto size = ParseUnsigned(parts[0]);
    if (!size || *size == 0 || *size > parts.size()) return std::nullopt;
    const bool named = parts.size() - 1 == *size * (*size + 1);
    const bool forAll = parts.size() - 1 == *size * *size && *size == layout.parameters.size();
    if (!named && !forAll) return std::nullopt;
    Spillover matrix{keyword, {}, {}};
    for (std::size_t i = 1; i <= *size; ++i)
        matrix.names.push_back(named ? std::string(parts[i]) : std::to_string(i));
    for (std::size_t i = named ? *size + 1 : 1; i < parts.size(); ++i) {
        const auto number = ParseNumber(parts[i]);
        if (!number) return std::nullopt;
        matrix.coefficients.push_back(*number);
    }
    return matrix;
}

void WarnOfUnknownNames(const Spillover& matrix, const EventLayout& layout, Findings& findings) {
    for (const std::string& name : matrix.names) {
        if (!FindChannel(layout, name)) {
            findings.Warn({matrix.keyword, name, "names of parameters"},
                          "the file has none of that name, and the matrix is not used");
        }
    }
}

}  // namespace

std::optional<std::size_t> FindChannel(const EventLayout& layout, const std::string& name) {
    const std::optional<std::size_t> position = FindParameter(layout, name);
    if (position) return position;
    const std::optional<std::uint64_t> number = ParseUnsigned(name);
    if (!number || *number == 0 || *number > layout.parameters.size()) return std::nullopt;
    return static_cast<std::size_t>(*number - 1);
}

bool IsSpilloverKeyword(const std::string& name) {
    return std::find(KeywordsInOrder.begin(), KeywordsInOrder.end(), UpperCase(name)) !=
           KeywordsInOrder.end();
}

std::optional<Spillover> ReadSpillover(const Keywords& keywords, const EventLayout& layout,
                                       Findings& findings) {
    for (const char* keyword : KeywordsInOrder) {
        const std::string* text = keywords.Find(keyword);
        if (text == nullptr) continue;
        std::optional<Spillover> matrix = Parse(keyword, *text, layout);
        if (matrix) {
            WarnOfUnknownNames(*matrix, layout, findings);
        } else {
            findings.Warn({keyword, *text, "n, n names and n x n numbers, separated by commas"},
                          "the matrix is left out");
        }
        return matrix;
    }
    return std::nullopt;
}

}  // namespace Host
