// Numbers in the text of a file, read strictly, and numbers written with the digits that bring them back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Host {

/// `text` without the blanks, line ends and zero bytes that writers pad values with.
std::string_view Trim(std::string_view text);

/// A whole number of decimal digits, padding allowed; none when there is anything else or it does not fit.
std::optional<std::uint64_t> ParseUnsigned(std::string_view text);

/// A finite decimal number, padding allowed.
std::optional<double> ParseNumber(std::string_view text);

/// The shortest digits that give the same number back.
std::string Shortest(float value);
std::string Shortest(double value);

/// About six significant digits, for a table; large numbers with all digits before the point.
std::string Rounded(double value, int digits = 6);

/// 0 to 100 with two decimals, or with two significant digits where those would be zeros.
std::string PercentText(double percent);

/// With commas between groups of three digits, for people.
std::string Grouped(std::uint64_t number);

/// What share `part` is of `whole`, "12.3 %", for people; "-" of nothing.
std::string Percentage(std::uint64_t part, std::uint64_t whole);

}  // namespace Host
