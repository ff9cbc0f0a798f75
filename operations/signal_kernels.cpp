#include "operations/signal_kernels.h"

#include <algorithm>
#include <cmath>

#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

ORVANE_KERNEL_INLINE double AddRatiosBody(const float* area, const float* height, int count, double sum) {
    constexpr int Block = 512;
    float ratios[Block];
    for (int begin = 0; begin < count; begin += Block) {
        const int length = std::min(Block, count - begin);
        for (int i = 0; i < length; ++i) {
            const float ratio = std::fabs(area[begin + i] / height[begin + i]);
            // Adding zero to what is not negative is adding nothing.
            ratios[i] = height[begin + i] == 0.0F ? 0.0F : ratio;
        }
        for (int i = 0; i < length; ++i) {
            sum += static_cast<double>(ratios[i]);
        }
    }
    return sum;
}

}  // namespace

ORVANE_MULTIVERSION(double, AddRatios, (const float* area, const float* height, int count, double sum),
                    (area, height, count, sum))

}  // namespace Orvane
