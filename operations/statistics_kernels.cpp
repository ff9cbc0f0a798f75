#include "operations/statistics_kernels.h"

#include <algorithm>
#include <cmath>

#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

#if defined(__GNUC__)
using FourFloats = float __attribute__((vector_size(16)));
using FourDoubles = double __attribute__((vector_size(32)));
#endif

// What a value contributes to a sum. The vector forms serve several columns at once, one in each lane.

struct Value {
    ORVANE_KERNEL_INLINE double operator()(float value) const { return value; }
#if defined(__GNUC__)
    ORVANE_KERNEL_INLINE void AddTo(FourDoubles& sums, const FourFloats& values) const {
        sums += __builtin_convertvector(values, FourDoubles);
    }
#endif
#if ORVANE_WIDE_KERNELS
    ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE __m512d AddedTo(__m512d sums, __m256 values) const {
        return _mm512_add_pd(sums, _mm512_cvtps_pd(values));
    }
#endif
};

struct SquareFrom {
    float Mean;
    ORVANE_KERNEL_INLINE double operator()(float value) const {
        const double difference = value - Mean;
        return difference * difference;
    }
#if defined(__GNUC__)
    ORVANE_KERNEL_INLINE void AddTo(FourDoubles& sums, const FourFloats& values) const {
        const FourDoubles differences = __builtin_convertvector(values - Mean, FourDoubles);
        sums += differences * differences;
    }
#endif
#if ORVANE_WIDE_KERNELS
    ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE __m512d AddedTo(__m512d sums, __m256 values) const {
        const __m512d differences = _mm512_cvtps_pd(_mm256_sub_ps(values, _mm256_set1_ps(Mean)));
        return _mm512_add_pd(sums, _mm512_mul_pd(differences, differences));
    }
#endif
};

template <class Term>
ORVANE_KERNEL_INLINE double AddInOrder(const float* values, int count, double sum, Term term) {
    for (int i = 0; i < count; ++i)
        sum += term(values[i]);
    return sum;
}

constexpr int LaneCount = 8;

// Columns being summed side by side, one in each lane; the first `Live` lanes are in use.
struct Lanes {
    const float* Values[LaneCount];
    double Sum[LaneCount];
    int Left[LaneCount];
    double* Result[LaneCount];
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

#if defined(__GNUC__)

// Adds the next `count` values, a multiple of eight, of every lane. The columns are transposed four by four.
template <class Term>
ORVANE_KERNEL_INLINE void AddSideBySideBody(Lanes& lanes, int count, Term term) {
    constexpr int Groups = LaneCount / 4;
    FourDoubles sums[Groups];
    __builtin_memcpy(sums, lanes.Sum, sizeof sums);
    for (int i = 0; i < count; i += 4) {
        for (int group = 0; group < Groups; ++group) {
            FourFloats rows[4];
            for (int k = 0; k < 4; ++k)
                __builtin_memcpy(&rows[k], lanes.Values[4 * group + k] + i, sizeof rows[k]);
            const FourFloats low01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
            const FourFloats low23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
            const FourFloats high01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
            const FourFloats high23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
            term.AddTo(sums[group], __builtin_shufflevector(low01, low23, 0, 1, 4, 5));
            term.AddTo(sums[group], __builtin_shufflevector(low01, low23, 2, 3, 6, 7));
            term.AddTo(sums[group], __builtin_shufflevector(high01, high23, 0, 1, 4, 5));
            term.AddTo(sums[group], __builtin_shufflevector(high01, high23, 2, 3, 6, 7));
        }
    }
    __builtin_memcpy(lanes.Sum, sums, sizeof sums);
}

#endif

#if ORVANE_WIDE_KERNELS

// Values i to i + 3 and i + 4 to i + 7 of two columns, in alternation.
ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE __m512 LoadPieces(const float* even, const float* odd, int i) {
    __m512 pieces = _mm512_castps128_ps512(_mm_loadu_ps(even + i));
    pieces = _mm512_insertf32x4(pieces, _mm_loadu_ps(odd + i), 1);
    pieces = _mm512_insertf32x4(pieces, _mm_loadu_ps(even + i + 4), 2);
    return _mm512_insertf32x4(pieces, _mm_loadu_ps(odd + i + 4), 3);
}

// Eight columns by eight values at a time.
template <class Term>
ORVANE_TARGET_AVX512 void AddSideBySideAvx512(Lanes& lanes, int count, Term term) {
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
            sums = term.AddedTo(sums, _mm256_castpd_ps(_mm512_castpd512_pd256(row)));
        for (const __m512d& row : rows)
            sums = term.AddedTo(sums, _mm256_castpd_ps(_mm512_extractf64x4_pd(row, 1)));
    }
    _mm512_storeu_pd(lanes.Sum, sums);
}

template <class Term>
ORVANE_TARGET_AVX2 void AddSideBySideAvx2(Lanes& lanes, int count, Term term) {
    AddSideBySideBody(lanes, count, term);
}

#endif

// Adds values of every lane in use, up to seven less than `count`, and returns how many. Idle lanes read
// along with the first one.
template <class Term>
int AddSideBySide(Lanes& lanes, int count, Term term) {
#if defined(__GNUC__)
    if (lanes.Live < 2) return 0;
    std::fill(lanes.Values + lanes.Live, lanes.Values + LaneCount, lanes.Values[0]);
    std::fill(lanes.Sum + lanes.Live, lanes.Sum + LaneCount, 0.0);
    const int whole = count / 8 * 8;
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() == InstructionSet::Avx512) {
        AddSideBySideAvx512(lanes, whole, term);
        return whole;
    }
    if (ActiveInstructionSet() == InstructionSet::Avx2) {
        AddSideBySideAvx2(lanes, whole, term);
        return whole;
    }
#endif
    AddSideBySideBody(lanes, whole, term);
    return whole;
#else
    return 0;
#endif
}

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
