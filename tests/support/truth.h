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

/// `gain` divides every number but the count.
inline void ExpectStatistics(const nlohmann::json& row, const nlohmann::json& truth, double gain) {
    const auto expected = [&](const char* key) { return truth[key].get<double>() / gain; };
    const auto expectNear = [&](const char* key, double value, double tolerance) {
        ASSERT_TRUE(row[key].is_number()) << key << ": " << row[key] << " instead of " << value;
        EXPECT_NEAR(row[key].get<double>(), value, tolerance) << key;
    };
    EXPECT_EQ(row["count"], truth["count"]);
    for (const char* key : {"min", "max", "median"})
        expectNear(key, expected(key), std::abs(expected(key)) * UnitOfFloat);
    for (const char* key : {"sd", "rsd"})
        expectNear(key, expected(key), expected(key) * Relative);
    expectNear("mean", expected("mean"), std::max(std::abs(expected("mean")), expected("sd")) * Relative);
    if (expected("mean") != 0) {
        const double cv = expected("sd") / expected("mean");
        expectNear("cv", cv, std::abs(cv) * 2 * Relative * std::max(1.0, std::abs(cv)));
    }
    if (expected("median") != 0) {
        const double rcv = expected("rsd") / expected("median");
        expectNear("rcv", rcv, std::abs(rcv) * 2 * Relative);
    }
}

}  // namespace Orvane::Testing
