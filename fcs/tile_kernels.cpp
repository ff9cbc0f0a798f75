// The exchange of rows and columns in registers, four parameters of 16 events at a time. The last four of a
// parameter count that is no multiple of four overlap the ones before: values are moved twice rather than
// anything beyond the row touched.
#include "fcs/tile_kernels.h"

#include <cstdint>
#include <cstring>

#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

constexpr int Group = 4;
constexpr std::ptrdiff_t CellBytes = 4;
constexpr std::ptrdiff_t LineBytes = 64;
constexpr int FetchDistance = 64;
// Smaller parts stay in the second-level cache, where the next reader finds them.
constexpr std::ptrdiff_t StreamFromBytes = std::ptrdiff_t{512} * 1024;

// The tile as it is described; also what narrow rows take everywhere.
void MoveToColumns(const unsigned char* rows, std::ptrdiff_t rowBytes, float* const* columns, int parCount,
                   std::ptrdiff_t event) {
    for (int p = 0; p < parCount; ++p) {
        for (int e = 0; e < TileEvents; ++e) {
            std::memcpy(columns[p] + event + e, rows + e * rowBytes + p * CellBytes, CellBytes);
        }
    }
}

void MoveToRows(const float* const* columns, int parCount, std::ptrdiff_t event, unsigned char* rows,
                std::ptrdiff_t rowBytes) {
    for (int p = 0; p < parCount; ++p) {
        for (int e = 0; e < TileEvents; ++e) {
            std::memcpy(rows + e * rowBytes + p * CellBytes, columns[p] + event + e, CellBytes);
        }
    }
}

#if defined(__SSE2__)

__m128 LoadFour(const unsigned char* bytes) {
    return _mm_loadu_ps(reinterpret_cast<const float*>(bytes));
}

template <Stores Kind>
void MoveToColumnsSse2(const unsigned char* rows, std::ptrdiff_t rowBytes, float* const* columns,
                       int parCount, std::ptrdiff_t event) {
    if (parCount < Group) return MoveToColumns(rows, rowBytes, columns, parCount, event);
    for (int p = 0; p < parCount; p += Group) {
        const int q = std::min(p, parCount - Group);
        for (int e = 0; e < TileEvents; e += Group) {
            const unsigned char* corner = rows + e * rowBytes + q * CellBytes;
            __m128 lanes[Group];
            for (int k = 0; k < Group; ++k)
                lanes[k] = LoadFour(corner + k * rowBytes);
            _MM_TRANSPOSE4_PS(lanes[0], lanes[1], lanes[2], lanes[3]);
            for (int k = 0; k < Group; ++k) {
                float* dest = columns[q + k] + event + e;
                Kind == Stores::Streaming ? _mm_stream_ps(dest, lanes[k]) : _mm_storeu_ps(dest, lanes[k]);
            }
        }
    }
}

void MoveToRowsSse2(const float* const* columns, int parCount, std::ptrdiff_t event, unsigned char* rows,
                    std::ptrdiff_t rowBytes) {
    if (parCount < Group) return MoveToRows(columns, parCount, event, rows, rowBytes);
    for (int p = 0; p < parCount; p += Group) {
        const int q = std::min(p, parCount - Group);
        for (int e = 0; e < TileEvents; e += Group) {
            unsigned char* corner = rows + e * rowBytes + q * CellBytes;
            __m128 lanes[Group];
            for (int k = 0; k < Group; ++k)
                lanes[k] = _mm_loadu_ps(columns[q + k] + event + e);
            _MM_TRANSPOSE4_PS(lanes[0], lanes[1], lanes[2], lanes[3]);
            for (int k = 0; k < Group; ++k) {
                _mm_storeu_ps(reinterpret_cast<float*>(corner + k * rowBytes), lanes[k]);
            }
        }
    }
}

#endif

#if ORVANE_WIDE_KERNELS

template <Stores Kind>
ORVANE_TARGET_AVX2 void MoveToColumnsAvx2(const unsigned char* rows, std::ptrdiff_t rowBytes,
                                          float* const* columns, int parCount, std::ptrdiff_t event) {
    if (parCount < Group) return MoveToColumns(rows, rowBytes, columns, parCount, event);
    for (int p = 0; p < parCount; p += Group) {
        const int q = std::min(p, parCount - Group);
        for (int e = 0; e < TileEvents; e += 8) {
            const unsigned char* corner = rows + e * rowBytes + q * CellBytes;
            __m256 r[Group];  // rows k and k + 4, so that transposing within halves leaves events in order
            for (int k = 0; k < Group; ++k) {
                const unsigned char* row = corner + k * rowBytes;
                r[k] = _mm256_insertf128_ps(_mm256_castps128_ps256(LoadFour(row)),
                                            LoadFour(row + 4 * rowBytes), 1);
            }
            const __m256 low01 = _mm256_unpacklo_ps(r[0], r[1]);
            const __m256 high01 = _mm256_unpackhi_ps(r[0], r[1]);
            const __m256 low23 = _mm256_unpacklo_ps(r[2], r[3]);
            const __m256 high23 = _mm256_unpackhi_ps(r[2], r[3]);
            const __m256 lanes[Group] = {
                _mm256_shuffle_ps(low01, low23, 0x44), _mm256_shuffle_ps(low01, low23, 0xEE),
                _mm256_shuffle_ps(high01, high23, 0x44), _mm256_shuffle_ps(high01, high23, 0xEE)};
            for (int k = 0; k < Group; ++k) {
                float* dest = columns[q + k] + event + e;
                Kind == Stores::Streaming ? _mm256_stream_ps(dest, lanes[k])
                                          : _mm256_storeu_ps(dest, lanes[k]);
            }
        }
    }
}

template <Stores Kind>
ORVANE_TARGET_AVX512 void MoveToColumnsAvx512(const unsigned char* rows, std::ptrdiff_t rowBytes,
                                              float* const* columns, int parCount, std::ptrdiff_t event) {
    if (parCount < Group) return MoveToColumns(rows, rowBytes, columns, parCount, event);
    for (int p = 0; p < parCount; p += Group) {
        const int q = std::min(p, parCount - Group);
        __m512 r[Group];  // rows k, k + 4, k + 8 and k + 12, so that transposing within quarters keeps order
        for (int k = 0; k < Group; ++k) {
            const unsigned char* row = rows + k * rowBytes + q * CellBytes;
            r[k] = _mm512_castps128_ps512(LoadFour(row));
            r[k] = _mm512_mask_broadcast_f32x4(r[k], 0x00F0, LoadFour(row + 4 * rowBytes));
            r[k] = _mm512_mask_broadcast_f32x4(r[k], 0x0F00, LoadFour(row + 8 * rowBytes));
            r[k] = _mm512_mask_broadcast_f32x4(r[k], 0xF000, LoadFour(row + 12 * rowBytes));
        }
        const __m512 low01 = _mm512_unpacklo_ps(r[0], r[1]);
        const __m512 high01 = _mm512_unpackhi_ps(r[0], r[1]);
        const __m512 low23 = _mm512_unpacklo_ps(r[2], r[3]);
        const __m512 high23 = _mm512_unpackhi_ps(r[2], r[3]);
        const __m512 lanes[Group] = {
            _mm512_shuffle_ps(low01, low23, 0x44), _mm512_shuffle_ps(low01, low23, 0xEE),
            _mm512_shuffle_ps(high01, high23, 0x44), _mm512_shuffle_ps(high01, high23, 0xEE)};
        for (int k = 0; k < Group; ++k) {
            float* dest = columns[q + k] + event;
            Kind == Stores::Streaming ? _mm512_stream_ps(dest, lanes[k]) : _mm512_storeu_ps(dest, lanes[k]);
        }
    }
}

#endif

template <Stores Kind>
TileToColumns SelectFor() {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() == InstructionSet::Avx512) return MoveToColumnsAvx512<Kind>;
    if (ActiveInstructionSet() == InstructionSet::Avx2) return MoveToColumnsAvx2<Kind>;
#endif
#if defined(__SSE2__)
    return MoveToColumnsSse2<Kind>;
#else
    return MoveToColumns;
#endif
}

std::ptrdiff_t BytesToLineBorder(const float* value) {
    const auto address = reinterpret_cast<std::uintptr_t>(value);
    return static_cast<std::ptrdiff_t>((0 - address) % LineBytes);
}

}  // namespace

TileToColumns SelectTileToColumns(Stores stores) {
    return stores == Stores::Streaming ? SelectFor<Stores::Streaming>() : SelectFor<Stores::Cached>();
}

void FinishStores(Stores stores) {
#if defined(__SSE2__)
    if (stores == Stores::Streaming) _mm_sfence();
#else
    (void)stores;
#endif
}

void TileToRows(const float* const* columns, int parCount, std::ptrdiff_t event, unsigned char* rows,
                std::ptrdiff_t rowBytes) {
#if defined(__SSE2__)
    MoveToRowsSse2(columns, parCount, event, rows, rowBytes);
#else
    MoveToRows(columns, parCount, event, rows, rowBytes);
#endif
}

void RowsToColumns(const EventRange& range, const unsigned char* raw, Stores stores) {
    const TileToColumns toColumns = SelectTileToColumns(stores);
    const std::ptrdiff_t rowBytes = RowBytes(range, 4);
    for (int event = 0; event < range.Count; event += TileEvents) {
        toColumns(raw + event * rowBytes, rowBytes, range.Columns, range.ParCount, range.First + event);
    }
    FinishStores(stores);
}

void FetchAhead(const EventRange& range, int event, int events) {
    constexpr int LineFloats = LineBytes / CellBytes;
    const int from = event + FetchDistance;
    const int end = std::min(from + events, range.Count);
    for (int e = from; e < end; e += LineFloats) {
        for (int p = 0; p < range.ParCount; ++p)
            __builtin_prefetch(range.Columns[p] + range.First + e);
    }
}

void ColumnsToRows(const EventRange& range, unsigned char* raw) {
    const std::ptrdiff_t rowBytes = RowBytes(range, 4);
    for (int event = 0; event < range.Count; event += TileEvents) {
        FetchAhead(range, event, TileEvents);
        TileToRows(range.Columns, range.ParCount, range.First + event, raw + event * rowBytes, rowBytes);
    }
}

TileCut CutIntoTiles(const EventRange& range) {
    if (range.ParCount < Group || range.Count <= 0) return {range.Count, 0, Stores::Cached};
    const std::ptrdiff_t border = BytesToLineBorder(range.Columns[0] + range.First);
    const auto agrees = [&](const float* column) {
        return BytesToLineBorder(column + range.First) == border;
    };
    const bool aligned = std::all_of(range.Columns, range.Columns + range.ParCount, agrees);
    const int head = aligned ? std::min(static_cast<int>(border / CellBytes), range.Count) : 0;
    const int body = (range.Count - head) / TileEvents * TileEvents;
    const bool large = CellBytes * body * range.ParCount >= StreamFromBytes;
    return {head, body, aligned && large ? Stores::Streaming : Stores::Cached};
}

}  // namespace Orvane
