#include "gate/threshold_kernels.h"

#include <algorithm>

#include "gate/sides.h"

namespace Orvane {
namespace {

// What a rule makes of 32 events: bounds for each column, and the words of its regions.

struct SegmentWords {
    Bounds<Lower::Closed> X;
    Bounds<Lower::Closed> Y{};

    ORVANE_KERNEL_INLINE std::array<std::uint32_t, 1> Of(Sides x, Sides /*y*/) const { return {x.Both()}; }
};

struct CutWords {
    Bounds<Lower::Open> X;
    Bounds<Lower::Open> Y{};

    ORVANE_KERNEL_INLINE std::array<std::uint32_t, 3> Of(Sides x, Sides /*y*/) const {
        return {x.AtMost, x.Beyond, ~x.AtMost};
    }
};

struct RectangleWords {
    Bounds<Lower::Closed> X;
    Bounds<Lower::Closed> Y;

    ORVANE_KERNEL_INLINE std::array<std::uint32_t, 1> Of(Sides x, Sides y) const {
        return {x.Both() & y.Both()};
    }
};

struct QuadrantWords {
    Bounds<Lower::Open> X;
    Bounds<Lower::Open> Y;

    ORVANE_KERNEL_INLINE std::array<std::uint32_t, 4> Of(Sides x, Sides y) const {
        return {x.Beyond & y.Beyond, x.AtMost & y.Beyond, x.AtMost & y.AtMost, x.Beyond & y.AtMost};
    }
};

template <std::size_t Regions>
ORVANE_KERNEL_INLINE void Add(const std::array<std::uint32_t, Regions>& words, int at,
                              const RegionWords<Regions>& out) {
    for (std::size_t region = 0; region < Regions; ++region) {
        if (out[region] != nullptr) out[region][at] |= words[region];
    }
}

template <class Rule, std::size_t Regions>
void FileBaseline(Rule rule, const float* x, const float* y, int words, const RegionWords<Regions>& out) {
    for (int w = 0; w < words; ++w, x += 32, y += 32) {
        Add(rule.Of(SidesBaseline(x, rule.X), SidesBaseline(y, rule.Y)), w, out);
    }
}

#if ORVANE_WIDE_KERNELS

template <class Rule, std::size_t Regions>
ORVANE_TARGET_AVX2 void FileAvx2(Rule rule, const float* x, const float* y, int words,
                                 const RegionWords<Regions>& out) {
    for (int w = 0; w < words; ++w, x += 32, y += 32) {
        Add(rule.Of(SidesAvx2(x, rule.X), SidesAvx2(y, rule.Y)), w, out);
    }
}

template <class Rule, std::size_t Regions>
ORVANE_TARGET_AVX512 void FileAvx512(Rule rule, const float* x, const float* y, int words,
                                     const RegionWords<Regions>& out) {
    for (int w = 0; w < words; ++w, x += 32, y += 32) {
        Add(rule.Of(SidesAvx512(x, rule.X), SidesAvx512(y, rule.Y)), w, out);
    }
}

#endif

template <class Rule, std::size_t Regions>
void FileWhole(Rule rule, const float* x, const float* y, int words, const RegionWords<Regions>& out) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() == InstructionSet::Avx512) return FileAvx512(rule, x, y, words, out);
    if (ActiveInstructionSet() == InstructionSet::Avx2) return FileAvx2(rule, x, y, words, out);
#endif
    FileBaseline(rule, x, y, words, out);
}

/// The last, incomplete word. Rules of one signal are given `x` for `y`.
template <class Rule, std::size_t Regions>
void FileRest(Rule rule, const float* x, const float* y, int first, int count,
              const RegionWords<Regions>& out) {
    std::array<float, 32> lastX{};
    std::array<float, 32> lastY{};
    std::copy(x + first, x + count, lastX.begin());
    std::copy(y + first, y + count, lastY.begin());
    auto words = rule.Of(SidesBaseline(lastX.data(), rule.X), SidesBaseline(lastY.data(), rule.Y));
    for (std::uint32_t& word : words) {
        word &= (std::uint32_t{1} << (count - first)) - 1;
    }
    Add(words, first / 32, out);
}

template <class Rule, std::size_t Regions>
void File(Rule rule, const float* x, const float* y, int count, const RegionWords<Regions>& out) {
    const int words = count / 32;
    FileWhole(rule, x, y, words, out);
    if (32 * words < count) FileRest(rule, x, y, 32 * words, count, out);
}

}  // namespace

void SegmentRule::operator()(const float* x, const float* /*y*/, int count,
                             const RegionWords<Regions>& out) const {
    File(SegmentWords{Between(Low, High)}, x, x, count, out);
}

void CutRule::operator()(const float* x, const float* /*y*/, int count,
                         const RegionWords<Regions>& out) const {
    File(CutWords{CutAt(Cut)}, x, x, count, out);
}

void RectangleRule::operator()(const float* x, const float* y, int count,
                               const RegionWords<Regions>& out) const {
    File(RectangleWords{Between(MinX, MaxX), Between(MinY, MaxY)}, x, y, count, out);
}

void QuadrantRule::operator()(const float* x, const float* y, int count,
                              const RegionWords<Regions>& out) const {
    File(QuadrantWords{CutAt(CutX), CutAt(CutY)}, x, y, count, out);
}

}  // namespace Orvane
