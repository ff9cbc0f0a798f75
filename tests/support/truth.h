// Real list-mode files with known results. Their folder is named at configuration or in the environment.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include <nlohmann/json.hpp>

namespace Orvane::Testing {

/// One unit in the last place of a float, relative, with the rounding of the description.
constexpr double UnitOfFloat = 1.2e-7;
constexpr double Relative = 1e-5;

inline std::filesystem::path SampleFolder() {
    const char* folder = std::getenv("ORVANE_SAMPLE_DATA");
    return folder != nullptr ? folder : ORVANE_SAMPLE_DATA;
}

inline void ExpectNear(const nlohmann::json& value, const nlohmann::json& expected, double tolerance,
                       const char* key) {
    ASSERT_TRUE(value.is_number()) << key << ": " << value << " instead of " << expected;
    EXPECT_NEAR(value.get<double>(), expected.get<double>(), tolerance) << key;
}

/// `gain` divides every number but the count.
inline void ExpectStatistics(const nlohmann::json& row, const nlohmann::json& truth, double gain) {
    const auto expected = [&](const char* key) { return truth[key].get<double>() / gain; };
    EXPECT_EQ(row["count"], truth["count"]);
    for (const char* key : {"min", "max", "median"}) {
        ExpectNear(row[key], expected(key), std::abs(expected(key)) * UnitOfFloat, key);
    }
    for (const char* key : {"sd", "rsd"})
        ExpectNear(row[key], expected(key), expected(key) * Relative, key);
    ExpectNear(row["mean"], expected("mean"), std::max(std::abs(expected("mean")), expected("sd")) * Relative,
               "mean");
    if (expected("mean") != 0) {
        const double cv = expected("sd") / expected("mean");
        ExpectNear(row["cv"], cv, std::abs(cv) * 2 * Relative * std::max(1.0, std::abs(cv)), "cv");
    }
    if (expected("median") != 0) {
        const double rcv = expected("rsd") / expected("median");
        ExpectNear(row["rcv"], rcv, std::abs(rcv) * 2 * Relative, "rcv");
    }
}

}  // namespace Orvane::Testing
