#include "plot/histogram_kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "sections/kernels.h"

namespace Orvane {
namespace {

// An event is counted once, however many gates have it: under its bin and its key, which has one bit per
// gate. Walking the set bits of gate after gate instead takes two to four times as long. The key bits that no
// gate needs number the events, so that equal neighbours have counters of their own and need not wait for
// each other's sums. The counters of a bin are one cache line.
constexpr int GatesAtOnce = 4;
constexpr int Keys = 1 << GatesAtOnce;
constexpr int BinsAtOnce = 1024;
constexpr int BlockSize = 512;
constexpr unsigned short NotShown = 65535;  // or in the last of 65536 bins

/// The counters of a window of bins, by key. The row behind the last bin takes the events of all other bins.
struct KeyedCounters {
    int First;  ///< bin
    int Bins;
    alignas(64) int Counts[BinsAtOnce + 1][Keys];
};

/// One byte for each of eight events.
using Eight = std::array<unsigned char, 8>;

/// Byte i is bit i of the index.
constexpr std::array<std::uint64_t, 256> SpreadBits = [] {
    std::array<std::uint64_t, 256> spread{};
    for (unsigned bits = 0; bits < 256; ++bits) {
        Eight bytes{};
        for (unsigned i = 0; i < 8; ++i)
            bytes[i] = (bits >> i) & 1U;
        spread[bits] = std::bit_cast<std::uint64_t>(bytes);
    }
    return spread;
}();

/// The numbers of eight events in the key bits from `gateCount` on.
std::uint64_t NumbersInKeys(std::size_t gateCount) {
    Eight numbers{};
    for (unsigned i = 0; i < 8; ++i)
        numbers[i] = static_cast<unsigned char>((i << gateCount) % Keys);
    return std::bit_cast<std::uint64_t>(numbers);
}

/// The keys of the 32 events of word `w`.
void MakeKeys(std::span<const GateCounters> gates, std::uint64_t numbers, int w, unsigned char* keys) {
    std::uint64_t eights[4] = {numbers, numbers, numbers, numbers};
    for (std::size_t g = 0; g < gates.size(); ++g) {
        const std::uint32_t members = gates[g].Members == nullptr ? ~std::uint32_t{0} : gates[g].Members[w];
        for (int e = 0; e < 4; ++e)
            eights[e] |= SpreadBits[(members >> (8 * e)) & 0xFFU] << g;
    }
    std::memcpy(keys, eights, sizeof eights);
}

/// Counts up to BlockSize events, from event `start` on.
void CountBlock(const unsigned short* bins, int start, int count, std::span<const GateCounters> gates,
                std::uint64_t numbers, KeyedCounters& counters) {
    unsigned char keys[BlockSize];
    unsigned short places[BlockSize];
    for (int i = 0; i < count; i += 32)
        MakeKeys(gates, numbers, (start + i) / 32, keys + i);
    const auto first = static_cast<unsigned short>(counters.First);
    const auto beyond = static_cast<unsigned short>(counters.Bins);
    for (int i = 0; i < count; ++i) {
        // Numbers below the window wrap to large ones.
        const auto bin = std::min(static_cast<unsigned short>(bins[start + i] - first), beyond);
        places[i] = static_cast<unsigned short>(bin * Keys + keys[i]);
    }
    int* counts = counters.Counts[0];
    for (int i = 0; i < count; ++i)
        ++counts[places[i]];
}

void CountByKey(const unsigned short* bins, int count, std::span<const GateCounters> gates,
                KeyedCounters& counters) {
    std::fill_n(counters.Counts[0], (counters.Bins + 1) * Keys, 0);
    const std::uint64_t numbers = NumbersInKeys(gates.size());
    for (int start = 0; start < count; start += BlockSize)
        CountBlock(bins, start, std::min(BlockSize, count - start), gates, numbers, counters);
}

/// Adds the counters of the window whose key has a bit of `mask`; of every key for mask 0.
void AddKeyed(const KeyedCounters& keyed, unsigned mask, Counters total) {
    const int end = std::min(keyed.Bins, total.Capacity - keyed.First);
    for (int bin = 0; bin < end; ++bin) {
        int sum = 0;
        for (unsigned key = 0; key < Keys; ++key)
            sum += (key & mask) == mask ? keyed.Counts[bin][key] : 0;
        total.Counts[keyed.First + bin] += sum;
    }
}

/// Whether event `i` is among them; null for every event.
bool IsAmong(const std::uint32_t* events, int i) {
    return events == nullptr || ((events[i / 32] >> (i % 32)) & 1U) != 0;
}

/// Counts the shown events of bin 65535, one by one.
void CountLastBin(const unsigned short* bins, int count, const std::uint32_t* shown, Counters all,
                  std::span<const GateCounters> gates) {
    for (int i = 0; i < count; ++i) {
        if (bins[i] != NotShown || !IsAmong(shown, i)) continue;
        CountNumbers(bins + i, 1, all);
        for (const GateCounters& gate : gates)
            if (IsAmong(gate.Members, i)) CountNumbers(bins + i, 1, gate.Bins);
    }
}

/// The number of bins up to the largest number, 65535 apart.
int UsedBins(const unsigned short* bins, int count) {
    unsigned short used = 0;
    for (int i = 0; i < count; ++i)
        used = std::max(used, static_cast<unsigned short>(bins[i] + 1));
    return used;
}

/// Counts the numbers below the capacity. Here, too, equal neighbours have counters of their own; for many
/// bins, of which they rarely are, adding those up would take longer than it saves.
void CountWithoutGates(const unsigned short* bins, int count, Counters all) {
    if (all.Capacity > BinsAtOnce) return CountNumbers(bins, count, all);
    constexpr int Rows = 4;
    int rows[Rows][BinsAtOnce + 1] = {};
    const auto beyond = static_cast<unsigned short>(all.Capacity);
    const int whole = count - count % Rows;
    for (int i = 0; i < whole; i += Rows) {
        for (int row = 0; row < Rows; ++row)
            ++rows[row][std::min(bins[i + row], beyond)];
    }
    CountNumbers(bins + whole, count - whole, all);
    for (int bin = 0; bin < all.Capacity; ++bin)
        all.Counts[bin] += rows[0][bin] + rows[1][bin] + rows[2][bin] + rows[3][bin];
}

}  // namespace

void CountByGate(const unsigned short* bins, int count, const std::uint32_t* shown, Counters all,
                 std::span<const GateCounters> gates) {
    int end = std::max(all.Capacity, 0);
    for (const GateCounters& gate : gates)
        end = std::max(end, gate.Bins.Capacity);
    if (end > NotShown) CountLastBin(bins, count, shown, all, gates);
    end = std::min(end, UsedBins(bins, count));
    if (gates.empty()) return CountWithoutGates(bins, count, {all.Counts, end});
    KeyedCounters keyed;
    do {
        const auto group = gates.first(std::min<std::size_t>(GatesAtOnce, gates.size()));
        for (keyed.First = 0; keyed.First < end; keyed.First += BinsAtOnce) {
            keyed.Bins = std::min(BinsAtOnce, end - keyed.First);
            CountByKey(bins, count, group, keyed);
            AddKeyed(keyed, 0, all);
            for (std::size_t g = 0; g < group.size(); ++g)
                AddKeyed(keyed, 1U << g, group[g].Bins);
        }
        all.Capacity = 0;  // counted with the first group
        gates = gates.subspan(group.size());
    } while (!gates.empty());
}

void RepeatBits(const std::uint32_t* bits, int times, int first, int count, std::uint32_t* out) {
    for (int begin = 0; begin < count;) {
        const int event = (first + begin) / times;
        const int end = std::min((event + 1) * times - first, count);
        FillBits(out, begin, end - begin, ((bits[event / 32] >> (event % 32)) & 1U) != 0);
        begin = end;
    }
}

}  // namespace Orvane
