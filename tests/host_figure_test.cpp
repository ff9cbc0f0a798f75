// The axes of pictures: labels say what lies at their ticks, whatever the range.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "host/picture/figure_axes.h"

namespace {

using Strings = std::vector<std::string>;

struct TicksCase {
    double min;
    double max;
    double alpha;
    Strings labels;  ///< all of them where there are any
};

const TicksCase TicksCases[] = {
    {0, 262144, 0, {"0", "50k", "100k", "150k", "200k", "250k"}},
    {0, 4e6, 0, {"0", "0.5M", "1.0M", "1.5M", "2.0M", "2.5M", "3.0M", "3.5M", "4.0M"}},
    {-0.25, 1, 0, {"−0.2", "0", "0.2", "0.4", "0.6", "0.8", "1.0"}},
    {-2000, 262144, 500, {"0", "10⁵", "10⁴", "10³", "−10³"}},
    {-1e5, -300, 200, {"−10⁵", "−10⁴", "−10³"}},
    {2e4, 8e4, 100, {"20k", "30k", "40k", "50k", "60k", "70k", "80k"}},
    {-10, 90, 150, {"0", "20", "40", "60", "80"}},
    {1000, 20000, 300, {"10k", "1k", "20k", "2k", "5k"}},
    {1e-9, 3e-9, 0, {}},
    {-3e12, 8e12, 0, {}},
    {1e6, 1e6 + 0.9, 0, {}},
    {-5000, -200, 0, {}},
    {0.3, 0.7, 1e-3, {}},
    {-1e38, 1e38, 1, {}},
    {-1e30, -1e-30, 0, {}}};

void Replace(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from))
        text.replace(at, from.size(), to);
}

/// The value that a reader takes from a label.
double Read(std::string label) {
    const Strings superscripts{"⁻", "⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    const std::string plain = "-0123456789";
    Replace(label, "×10", "e");
    for (std::size_t i = 0; i < plain.size(); ++i) {
        Replace(label, "10" + superscripts[i], std::string("1e") + plain[i]);
        Replace(label, superscripts[i], std::string(1, plain[i]));
    }
    Replace(label, "−", "-");
    Replace(label, "k", "e3");
    Replace(label, "M", "e6");
    return std::stod(label);
}

TEST(Ticks, LabelsReadAsTheValuesAtTheirTicksAndAreThoseThatPeopleExpect) {
    for (const TicksCase& row : TicksCases) {
        SCOPED_TRACE(testing::Message() << row.min << " to " << row.max);
        const Host::Axis axis{"", row.min, row.max, row.alpha};
        for (const int pixels : {60, 160, 550, 2400}) {
            const Host::AxisScale scale(axis, pixels);
            const Host::Ticks ticks = Host::FindTicks(axis, pixels, 60);
            Strings labels;
            std::set<double> values;
            for (const Host::Tick& tick : ticks.labelled) {
                EXPECT_NEAR(scale.Position(Read(tick.label)), tick.position, 0.01) << tick.label;
                labels.push_back(tick.label);
                values.insert(Read(tick.label));
            }
            EXPECT_EQ(values.size(), labels.size());
            EXPECT_GE(values.size(), 2U) << pixels;
            for (const double minor : ticks.minor)
                EXPECT_TRUE(minor > -0.01 && minor < pixels + 0.01) << minor;
            if (pixels == 550 && !row.labels.empty()) {
                EXPECT_EQ(labels, row.labels);
            }
        }
    }
}

TEST(Ticks, AnAxisWithoutARangeHasNone) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const Host::Axis& axis : {Host::Axis{"", 5, 5, 0}, Host::Axis{"", -infinity, infinity, 1},
                                   Host::Axis{"", 0, std::nan(""), 0}, Host::Axis{"", 1, 0, 10}}) {
        EXPECT_TRUE(Host::FindTicks(axis, 100, 30).labelled.empty());
    }
}

}  // namespace
