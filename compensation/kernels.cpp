#include "compensation/kernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "foundation/instruction_set.h"
#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

constexpr int Block = CompensationBlock;
constexpr int LineBytes = 64;
constexpr int LineFloats = LineBytes / 4;
// Smaller results stay in the second-level cache, where the next reader finds them.
constexpr std::size_t StreamFromBytes = std::size_t{512} * 1024;

/// Streaming stores do not read the destination into the cache, and do not leave it there.
enum class Stores { Cached, Streaming };

// The compiler keeps plain arrays in memory between two terms; vectors stay in registers.
struct Lanes2 {
    static constexpr int Count = 2;
    using Doubles [[gnu::vector_size(16)]] = double;
    using Floats [[gnu::vector_size(8)]] = float;
};
struct Lanes4 {
    static constexpr int Count = 4;
    using Doubles [[gnu::vector_size(32)]] = double;
    using Floats [[gnu::vector_size(16)]] = float;
};
struct Lanes8 {
    static constexpr int Count = 8;
    using Doubles [[gnu::vector_size(64)]] = double;
    using Floats [[gnu::vector_size(32)]] = float;
};

/// One row for the events of a block, a part at a time whose sums fit into registers.
template <class Lanes>
ORVANE_KERNEL_INLINE void CorrectBlock(const CompensationRow& row, const StagedChannel* staged,
                                       float* corrected) {
    constexpr int Vectors = 8;
    for (int event = 0; event < Block; event += Vectors * Lanes::Count) {
        const double* values = staged[row.Channel].Values + event;
        typename Lanes::Doubles sums[Vectors];
        for (int v = 0; v < Vectors; ++v) {
            typename Lanes::Doubles value;
            std::memcpy(&value, values + v * Lanes::Count, sizeof value);
            sums[v] = value * row.Diagonal + row.Offset;
        }
        for (const SpillTerm& term : row.Terms) {
            const double* differences = staged[term.Channel].Differences + event;
            for (int v = 0; v < Vectors; ++v) {
                typename Lanes::Doubles difference;
                std::memcpy(&difference, differences + v * Lanes::Count, sizeof difference);
                sums[v] -= difference * term.Coefficient;
            }
        }
        for (int v = 0; v < Vectors; ++v) {
            const auto floats = __builtin_convertvector(sums[v], typename Lanes::Floats);
            std::memcpy(corrected + event + v * Lanes::Count, &floats, sizeof floats);
        }
    }
}

/// Moves the results of a block to their column, whose lines they fill.
ORVANE_KERNEL_INLINE void StreamBlock(const float* corrected, float* column) {
#if defined(__SSE2__)
    for (int e = 0; e < Block; e += 4)
        _mm_stream_ps(column + e, _mm_load_ps(corrected + e));
#else
    std::copy_n(corrected, Block, column);
#endif
}

template <class Lanes>
ORVANE_KERNEL_INLINE void CorrectEvents(const CompensationRow& row, const StagedChannel* staged, int event,
                                        int count, Stores stores) {
    float* column = row.Corrected + event;
    if (count == Block && stores == Stores::Cached) return CorrectBlock<Lanes>(row, staged, column);
    alignas(LineBytes) float corrected[Block];
    CorrectBlock<Lanes>(row, staged, corrected);
    if (count == Block) return StreamBlock(corrected, column);
    std::copy_n(corrected, count, column);
}

ORVANE_KERNEL_INLINE void StageBlock(const float* column, float baseline, StagedChannel& staged) {
    for (int e = 0; e < Block; ++e) {
        staged.Values[e] = static_cast<double>(column[e]);
        staged.Differences[e] = static_cast<double>(column[e] - baseline);
    }
}

ORVANE_KERNEL_INLINE void StageEvents(const CompensationChannel& channel, int event, int count,
                                      StagedChannel& staged) {
    const float* column = channel.Column + event;
    if (count == Block) return StageBlock(column, channel.Baseline, staged);
    float padded[Block] = {};
    std::copy_n(column, count, padded);
    StageBlock(padded, channel.Baseline, staged);
}

/// Has the next block of a column brought in: the processor's own prefetching loses track of so many columns.
ORVANE_KERNEL_INLINE void FetchAhead(const float* column, int event) {
    for (int e = Block; e < 2 * Block; e += LineFloats)
        __builtin_prefetch(column + event + e);
}

template <class Lanes>
ORVANE_KERNEL_INLINE void CompensateBody(std::span<const CompensationChannel> channels,
                                         std::span<const CompensationRow> rows, int events,
                                         std::span<StagedChannel> staged, Stores stores) {
    for (int event = 0; event < events; event += Block) {
        const int count = std::min(Block, events - event);
        for (std::size_t c = 0; c < channels.size(); ++c) {
            if (channels[c].Column != nullptr) StageEvents(channels[c], event, count, staged[c]);
        }
        for (const CompensationRow& row : rows) {
            FetchAhead(channels[static_cast<std::size_t>(row.Channel)].Column, event);
            CorrectEvents<Lanes>(row, staged.data(), event, count, stores);
        }
    }
}

#if ORVANE_WIDE_KERNELS
ORVANE_TARGET_AVX512 void CompensateAvx512(std::span<const CompensationChannel> channels,
                                           std::span<const CompensationRow> rows, int events,
                                           std::span<StagedChannel> staged, Stores stores) {
    CompensateBody<Lanes8>(channels, rows, events, staged, stores);
}

ORVANE_TARGET_AVX2 void CompensateAvx2(std::span<const CompensationChannel> channels,
                                       std::span<const CompensationRow> rows, int events,
                                       std::span<StagedChannel> staged, Stores stores) {
    CompensateBody<Lanes4>(channels, rows, events, staged, stores);
}
#endif

void Compensate(std::span<const CompensationChannel> channels, std::span<const CompensationRow> rows,
                int events, std::span<StagedChannel> staged, Stores stores) {
#if ORVANE_WIDE_KERNELS
    switch (ActiveInstructionSet()) {
        case InstructionSet::Avx512:
            return CompensateAvx512(channels, rows, events, staged, stores);
        case InstructionSet::Avx2:
            return CompensateAvx2(channels, rows, events, staged, stores);
        case InstructionSet::Baseline:
            break;
    }
#endif
    CompensateBody<Lanes2>(channels, rows, events, staged, stores);
}

bool IsAlignedToLines(const float* column) {
    return reinterpret_cast<std::uintptr_t>(column) % LineBytes == 0;
}

Stores SuitableStores(std::span<const CompensationRow> rows, int events) {
    const std::size_t bytes = sizeof(float) * rows.size() * static_cast<std::size_t>(events);
    if (bytes < StreamFromBytes) return Stores::Cached;
    const bool aligned = std::all_of(
        rows.begin(), rows.end(), [](const CompensationRow& row) { return IsAlignedToLines(row.Corrected); });
    return aligned ? Stores::Streaming : Stores::Cached;
}

// The results of a stretch go through an array of their own, so that the compiler need not fear that they
// are read again in the next one.
constexpr int Stretch = 64;

ORVANE_KERNEL_INLINE void ScaleStretch(const float* column, int count, double diagonal, double offset,
                                       float* scaled) {
    double results[Stretch];
    for (int e = 0; e < count; ++e)
        results[e] = static_cast<double>(column[e]) * diagonal + offset;
    for (int e = 0; e < count; ++e)
        scaled[e] = static_cast<float>(results[e]);
}

ORVANE_KERNEL_INLINE void ScaleColumnBody(const float* column, int events, double diagonal, double offset,
                                          float* scaled) {
    int e = 0;
    for (; events - e >= Stretch; e += Stretch)
        ScaleStretch(column + e, Stretch, diagonal, offset, scaled + e);
    ScaleStretch(column + e, events - e, diagonal, offset, scaled + e);
}

ORVANE_KERNEL_INLINE void SubtractBaselineBody(const float* column, int events, float baseline,
                                               float* differences) {
    for (int e = 0; e < events; ++e)
        differences[e] = column[e] - baseline;
}

}  // namespace

void CompensateRows(std::span<const CompensationChannel> channels, std::span<const CompensationRow> rows,
                    int events, std::span<StagedChannel> staged) {
    if (rows.empty() || events < 1) return;
    const Stores stores = SuitableStores(rows, events);
    Compensate(channels, rows, events, staged, stores);
#if defined(__SSE2__)
    if (stores == Stores::Streaming) _mm_sfence();
#endif
}

ORVANE_MULTIVERSION(void, ScaleColumn,
                    (const float* column, int events, double diagonal, double offset, float* scaled),
                    (column, events, diagonal, offset, scaled))
ORVANE_MULTIVERSION(void, SubtractBaseline,
                    (const float* column, int events, float baseline, float* differences),
                    (column, events, baseline, differences))

}  // namespace Orvane
