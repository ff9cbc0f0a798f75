#include "operations/statistics_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

// What a value contributes to a sum: it is prepared as a float, widened, and finished as a double. V is a
// number or a vector with one column in each lane.
struct Value {
    template <class V>
    ORVANE_KERNEL_INLINE void Prepare(V& /*values*/) const {}
    template <class V>
    ORVANE_KERNEL_INLINE void Finish(V& /*values*/) const {}
};
struct SquareFrom {
    float Mean;
    template <class V>
    ORVANE_KERNEL_INLINE void Prepare(V& values) const {
        values -= Mean;
    }
    template <class V>
    ORVANE_KERNEL_INLINE void Finish(V& differences) const {
        differences *= differences;
    }
};

template <class Term>
ORVANE_KERNEL_INLINE double AddInOrder(const float* values, int count, double sum, Term term) {
    for (int i = 0; i < count; ++i) {
        float value = values[i];
        term.Prepare(value);
        double wide = value;
        term.Finish(wide);
        sum += wide;
    }
    return sum;
}

constexpr int LaneCount = 8;

// Columns being summed side by side, one in each lane; the first `Live` lanes are in use.
struct Lanes {
    const float* Values[LaneCount] = {};
    double Sum[LaneCount] = {};
    int Left[LaneCount] = {};
    double* Result[LaneCount] = {};
    int Live = 0;

    ORVANE_KERNEL_INLINE void Add(std::span<const float> column, double* result) {
        Values[Live] = column.data();
        Sum[Live] = 0;
        Left[Live] = static_cast<int>(column.size());
        Result[Live] = result;
        ++Live;
    }

    // Stores the sum of a lane and moves the last lane into its place.
    ORVANE_KERNEL_INLINE void Finish(int lane) {
        *Result[lane] = Sum[lane];
        --Live;
        Values[lane] = Values[Live];
        Sum[lane] = Sum[Live];
        Left[lane] = Left[Live];
        Result[lane] = Result[Live];
    }
};

#if ORVANE_WIDE_KERNELS

// Each of these adds the next `count` values, a multiple of eight, of every lane. They transpose pieces of
// two, four or eight columns in registers.

template <class Term>
ORVANE_KERNEL_INLINE void AddTo(__m128d& sums, __m128 values, Term term) {
    term.Prepare(values);
    __m128d wide = _mm_cvtps_pd(values);
    term.Finish(wide);
    sums = _mm_add_pd(sums, wide);
}

template <class Term>
void AddByTwos(Lanes& lanes, int count, Term term) {
    __m128d sums[LaneCount / 2];
    std::memcpy(sums, lanes.Sum, sizeof sums);
    for (int i = 0; i < count; i += 4) {
        for (int lane = 0; lane < LaneCount; lane += 2) {
            const float* const* columns = lanes.Values + lane;
            const __m128 even = _mm_loadu_ps(columns[0] + i);
            const __m128 odd = _mm_loadu_ps(columns[1] + i);
            const __m128 low = _mm_unpacklo_ps(even, odd);
            const __m128 high = _mm_unpackhi_ps(even, odd);
            AddTo(sums[lane / 2], low, term);
            AddTo(sums[lane / 2], _mm_movehl_ps(low, low), term);
            AddTo(sums[lane / 2], high, term);
            AddTo(sums[lane / 2], _mm_movehl_ps(high, high), term);
        }
    }
    std::memcpy(lanes.Sum, sums, sizeof sums);
}

template <class Term>
ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE void AddTo(__m256d& sums, __m128 values, Term term) {
    term.Prepare(values);
    __m256d wide = _mm256_cvtps_pd(values);
    term.Finish(wide);
    sums = _mm256_add_pd(sums, wide);
}

template <class Term>
ORVANE_TARGET_AVX2 void AddByFours(Lanes& lanes, int count, Term term) {
    __m256d sums[LaneCount / 4];
    std::memcpy(sums, lanes.Sum, sizeof sums);
    for (int i = 0; i < count; i += 4) {
        for (int lane = 0; lane < LaneCount; lane += 4) {
            const float* const* columns = lanes.Values + lane;
            __m128 row0 = _mm_loadu_ps(columns[0] + i);
            __m128 row1 = _mm_loadu_ps(columns[1] + i);
            __m128 row2 = _mm_loadu_ps(columns[2] + i);
            __m128 row3 = _mm_loadu_ps(columns[3] + i);
            _MM_TRANSPOSE4_PS(row0, row1, row2, row3);
            AddTo(sums[lane / 4], row0, term);
            AddTo(sums[lane / 4], row1, term);
            AddTo(sums[lane / 4], row2, term);
            AddTo(sums[lane / 4], row3, term);
        }
    }
    std::memcpy(lanes.Sum, sums, sizeof sums);
}

template <class Term>
ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE void AddTo(__m512d& sums, __m256 values, Term term) {
    term.Prepare(values);
    __m512d wide = _mm512_cvtps_pd(values);
    term.Finish(wide);
    sums = _mm512_add_pd(sums, wide);
}

// Values i to i + 3 and i + 4 to i + 7 of two columns, in alternation.
ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE __m512 LoadPieces(const float* even, const float* odd, int i) {
    __m512 pieces = _mm512_castps128_ps512(_mm_loadu_ps(even + i));
    pieces = _mm512_insertf32x4(pieces, _mm_loadu_ps(odd + i), 1);
    pieces = _mm512_insertf32x4(pieces, _mm_loadu_ps(even + i + 4), 2);
    return _mm512_insertf32x4(pieces, _mm_loadu_ps(odd + i + 4), 3);
}

template <class Term>
ORVANE_TARGET_AVX512 void AddByEights(Lanes& lanes, int count, Term term) {
    __m512d sums = _mm512_loadu_pd(lanes.Sum);
    for (int i = 0; i < count; i += 8) {
        const __m512 columns04 = LoadPieces(lanes.Values[0], lanes.Values[4], i);
        const __m512 columns15 = LoadPieces(lanes.Values[1], lanes.Values[5], i);
        const __m512 columns26 = LoadPieces(lanes.Values[2], lanes.Values[6], i);
        const __m512 columns37 = LoadPieces(lanes.Values[3], lanes.Values[7], i);
        const __m512d low01 = _mm512_castps_pd(_mm512_unpacklo_ps(columns04, columns15));
        const __m512d high01 = _mm512_castps_pd(_mm512_unpackhi_ps(columns04, columns15));
        const __m512d low23 = _mm512_castps_pd(_mm512_unpacklo_ps(columns26, columns37));
        const __m512d high23 = _mm512_castps_pd(_mm512_unpackhi_ps(columns26, columns37));
        const __m512d rows[4] = {_mm512_unpacklo_pd(low01, low23), _mm512_unpackhi_pd(low01, low23),
                                 _mm512_unpacklo_pd(high01, high23), _mm512_unpackhi_pd(high01, high23)};
        for (const __m512d& row : rows)
            AddTo(sums, _mm256_castpd_ps(_mm512_castpd512_pd256(row)), term);
        for (const __m512d& row : rows)
            AddTo(sums, _mm256_castpd_ps(_mm512_extractf64x4_pd(row, 1)), term);
    }
    _mm512_storeu_pd(lanes.Sum, sums);
}

// Adds values of every lane in use, up to seven less than `count`, and returns how many. Idle lanes read
// along with the first one.
template <class Term>
int AddSideBySide(Lanes& lanes, int count, Term term) {
    if (lanes.Live < 2) return 0;
    std::fill(lanes.Values + lanes.Live, lanes.Values + LaneCount, lanes.Values[0]);
    std::fill(lanes.Sum + lanes.Live, lanes.Sum + LaneCount, 0.0);
    const int whole = count / 8 * 8;
    switch (ActiveInstructionSet()) {
        case InstructionSet::Avx512:
            AddByEights(lanes, whole, term);
            break;
        case InstructionSet::Avx2:
            AddByFours(lanes, whole, term);
            break;
        default:
            AddByTwos(lanes, whole, term);
    }
    return whole;
}

#else

template <class Term>
int AddSideBySide(Lanes& /*lanes*/, int /*count*/, Term /*term*/) {
    return 0;
}

#endif

// Adds the next `count` values of every lane in use.
template <class Term>
void Advance(Lanes& lanes, int count, Term term) {
    const int done = AddSideBySide(lanes, count, term);
    for (int lane = 0; lane < lanes.Live; ++lane) {
        lanes.Sum[lane] = AddInOrder(lanes.Values[lane] + done, count - done, lanes.Sum[lane], term);
        lanes.Values[lane] += count;
        lanes.Left[lane] -= count;
    }
}

// Keeps the lanes filled with columns until all are summed.
template <class Term>
void SumEach(std::span<const std::span<const float>> columns, double* sums, Term term) {
    Lanes lanes;
    std::size_t next = 0;
    while (lanes.Live > 0 || next < columns.size()) {
        for (; lanes.Live < LaneCount && next < columns.size(); ++next)
            lanes.Add(columns[next], sums + next);
        Advance(lanes, *std::min_element(lanes.Left, lanes.Left + lanes.Live), term);
        for (int lane = lanes.Live - 1; lane >= 0; --lane)
            if (lanes.Left[lane] == 0) lanes.Finish(lane);
    }
}

ORVANE_KERNEL_INLINE void ReplaceByDeviationsBody(float* values, int count, float centre) {
    for (int i = 0; i < count; ++i) {
        const float value = values[i];
        values[i] = value <= centre ? centre - value : value - centre;
    }
}

ORVANE_KERNEL_INLINE void WriteVirtualValuesBody(std::span<const float> values, const double* offsets,
                                                 int offsetCount, std::int64_t first, int count, float* out) {
    const std::int64_t group = std::int64_t{offsetCount} + 1;
    auto index = static_cast<std::size_t>(first / group);
    int number = static_cast<int>(first % group);
    for (int written = 0; written < count; ++index, number = 0) {
        const float value = values[index];
        const double root = std::sqrt(std::fabs(value));
        if (number == 0) {
            out[written++] = value;
            ++number;
        }
        const int end = std::min(count, written + offsetCount + 1 - number);
        for (; written < end; ++written, ++number)
            out[written] = static_cast<float>(root * offsets[number - 1] + value);
    }
}

}  // namespace

ORVANE_MULTIVERSION(void, ReplaceByDeviations, (float* values, int count, float centre),
                    (values, count, centre))
ORVANE_MULTIVERSION(void, WriteVirtualValues,
                    (std::span<const float> values, const double* offsets, int offsetCount,
                     std::int64_t first, int count, float* out),
                    (values, offsets, offsetCount, first, count, out))

void SumColumns(std::span<const std::span<const float>> columns, double* sums) {
    SumEach(columns, sums, Value{});
}

void SumSquaresOfColumns(std::span<const std::span<const float>> columns, float mean, double* sums) {
    SumEach(columns, sums, SquareFrom{mean});
}

double AddValues(std::span<const float> values, double sum) {
    return AddInOrder(values.data(), static_cast<int>(values.size()), sum, Value{});
}

double AddSquares(std::span<const float> values, float mean, double sum) {
    return AddInOrder(values.data(), static_cast<int>(values.size()), sum, SquareFrom{mean});
}

int RandomPicker::Pick(std::span<const float> values, float* out) {
    int picked = 0;
    for (const float value : values) {
        if (wanted_ <= 0) break;
        const bool take =
            NextBelow(static_cast<std::uint64_t>(left_--)) < static_cast<std::uint64_t>(wanted_);
        out[picked] = value;
        picked += static_cast<int>(take);
        wanted_ -= static_cast<int>(take);
    }
    return picked;
}

// A number below `bound`, which has at most 32 bits: the upper half of a 64-bit mixing step, scaled.
std::uint64_t RandomPicker::NextBelow(std::uint64_t bound) {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = (state_ ^ (state_ >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return ((mixed ^ (mixed >> 31)) >> 32) * bound >> 32;
}

}  // namespace Orvane
