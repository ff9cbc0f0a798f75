// How single values are written in results: JSON, and fields of comma-separated values.
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Host {

/// Floating-point numbers are floats here, so that they are written with a float's digits; keys keep their
/// order.
using FloatJson = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                       std::uint64_t, float>;

FloatJson OrNull(const std::optional<float>& value);

/// `text`, quoted where the comma-separated form needs it.
std::string CsvField(const std::string& text);

/// With all its digits; nothing when there is no number.
std::string CsvNumber(const std::optional<float>& value);

}  // namespace Host
