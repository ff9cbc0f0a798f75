#include "text/numbers.h"

#include <charconv>
#include <cmath>

namespace Host {
namespace {

constexpr std::string_view Padding("\0 \t\r\n", 5);

template <class Number, class... Format>
std::string ToText(Number value, Format... format) {
    char digits[64];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value, format...);
    return error == std::errc() ? std::string(digits, end) : std::string();
}

template <class Number>
std::optional<Number> Parse(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(Padding);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(Padding) - first + 1);
}

std::optional<std::uint64_t> ParseUnsigned(std::string_view text) {
    return Parse<std::uint64_t>(Trim(text));
}

std::optional<double> ParseNumber(std::string_view text) {
    std::string_view digits = Trim(text);
    if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') digits.remove_prefix(1);
    const auto value = Parse<double>(digits);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::string Shortest(float value) {
    return ToText(value);
}
std::string Shortest(double value) {
    return ToText(value);
}
std::string Rounded(double value, int digits) {
    const double size = std::abs(value);
    if (size >= 1e5 && size < 1e12) return ToText(value, std::chars_format::fixed, 0);
    return ToText(value, std::chars_format::general, digits);
}

std::string PercentText(double percent) {
    if (percent != 0 && percent < 0.1) return Rounded(percent, 2);
    return ToText(percent, std::chars_format::fixed, 2);
}

std::string Grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3;)
        text.insert(place -= 3, 1, ',');
    return text;
}

std::string Percentage(std::uint64_t part, std::uint64_t whole) {
    if (whole == 0) return "-";
    const double percent = 100 * static_cast<double>(part) / static_cast<double>(whole);
    if (part > 0 && percent < 0.01) return "<0.01 %";
    const int places = part == 0 || part == whole ? 0 : percent < 1 ? 2 : 1;
    return ToText(percent, std::chars_format::fixed, places) + " %";
}

}  // namespace Host
