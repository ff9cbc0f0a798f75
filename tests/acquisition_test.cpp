// Acquisition buffers against the formulas of their signals, drawing the same random numbers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <tuple>

#include <orvane/OVEventSection.h>

#include "tests/support/events.h"
#include "tests/support/pool.h"

namespace Orvane::Testing {
namespace {

TEST(Acquisition, FollowsTheFormulasAndTheOrderOfTheRandomNumbers) {
    std::vector<int> map{1, 4, -1, 0, -2, 3, 2, 5};
    std::vector<float> gains{3.0F, 1.0F, 1.0F, 2.55F, 1.0F, 0.3F, 16.0F, 1.0F};
    std::vector<int> buffer(645);
    for (std::size_t i = 0; i < buffer.size(); ++i)
        buffer[i] = i % 11 == 0 ? 0 : static_cast<int>(i * 7919 % 20011) - 3000;
    const auto tenths = [](int bound) { return static_cast<float>(std::rand() % bound) / 10.0F; };
    const auto acquirePlainly = [&](int event) {
        const auto first = buffer.begin() + std::ptrdiff_t{event} * 5;
        const std::vector<float> raw(first, first + 5);
        const float below = raw[3] * 0.37F;
        return std::vector<float>{raw[1] / 3.0F + tenths(10),
                                  raw[4] + 0.5F,
                                  below == 0.0F ? 1.0F : raw[1] / 7.0F / below * 1024.0F,
                                  2.55F * raw[0] + tenths(25),
                                  -1.0F,  // not written
                                  raw[3] / 0.3F + tenths(10),
                                  16.0F * raw[2] + tenths(160),
                                  -1.0F};
    };
    // Whole sections, a partial last event, next to nothing, nothing.
    for (const auto& [dataCount, channels, events, sections] :
         {std::tuple(640, 5, 128, 2U), {642, 5, 129, 3U}, {1, 5, 1, 1U}, {0, 5, 0, 1U}, {9, 0, 0, 1U}}) {
        SCOPED_TRACE(dataCount);
        if (events == 0) gains.clear();
        OVCollectData data{buffer.data(), dataCount, channels, 1, 3, 7.0F, 0.37F, 0.5F};
        const SmallPool pool;
        OwnedEvents sample(Rows(1, std::vector<float>(8)));
        OVEventSection().DealEvent(sample.Sections, map, gains, data);
        EXPECT_EQ(sample.Sections.size(), sections);
        for (EventSection* section : sample.Sections) {
            std::fill_n((*section)[4], 64, -1.0F);
            std::fill_n((*section)[7], 64, -1.0F);
        }
        // Each call seeds with the time in seconds: again, should a second end meanwhile.
        std::time_t now = 0;
        do {
            now = std::time(nullptr);
            OVEventSection().DealEvent(sample.Sections, map, gains, data);
        } while (std::time(nullptr) != now);
        std::srand(static_cast<unsigned>(now));
        Rows expected;
        for (int event = 0; event < events; ++event)
            expected.push_back(acquirePlainly(event));
        EXPECT_EQ(RowsOf(sample.Sections), expected);
    }
}

}  // namespace
}  // namespace Orvane::Testing
