// Filter kernels: combining and counting over a sample of a million events beside reading the words, gate
// numbers and packing over one full section beside the walk event by event.
#include <algorithm>
#include <random>
#include <vector>

#include "bench/support.h"
#include "operations/filter_kernels.h"
#include "sections/kernels.h"

namespace {

using namespace Orvane;

constexpr int Events = 65536;
constexpr int Words = Events / 32;
constexpr int SampleEvents = 16 * Events;
constexpr int SampleWords = 16 * Words;
using Bits = std::vector<std::uint32_t>;

Bits RandomBits(unsigned seed, int words) {
    std::mt19937 random(seed);
    Bits bits(static_cast<std::size_t>(words));
    std::generate(bits.begin(), bits.end(), [&] { return static_cast<std::uint32_t>(random()); });
    return bits;
}

bool IsSet(const std::uint32_t* bits, int i) {
    return ((bits[i / 32] >> (i % 32)) & 1U) != 0;
}

/// Filters at equal distances within one block, as the pool cuts them.
struct Filters {
    explicit Filters(int count) {
        for (int f = 0; f < count; ++f) {
            const Bits filter = RandomBits(static_cast<unsigned>(f), Words);
            Storage.insert(Storage.end(), filter.begin(), filter.end());
        }
        for (int f = 0; f < count; ++f) {
            Pointers.push_back(Storage.data() + static_cast<std::size_t>(f) * Words);
        }
    }
    Bits Storage;
    std::vector<const std::uint32_t*> Pointers;
};

template <class Kernel>
auto Timed(int events, Kernel kernel) {
    return [events, kernel](benchmark::State& state) {
        for (auto _ : state) {
            kernel();
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * events);
    };
}

template <class Kernel>
void RegisterPair(const std::string& group, int events, void (*plain)(), Kernel kernel) {
    Bench::Register(group, "plain", Timed(events, plain));
    Bench::RegisterForEachInstructionSet(group, Timed(events, kernel));
}

ORVANE_KERNEL_INLINE std::uint32_t ReadWordsBody(const std::uint32_t* words) {
    std::uint32_t all = 0;
    for (int i = 0; i < SampleWords; ++i) {
        all |= words[i];
    }
    return all;
}

/// What combining and counting are measured against, under the widest set.
ORVANE_MULTIVERSION(std::uint32_t, ReadWords, (const std::uint32_t* words), (words))

Bits& Dest() {
    static Bits bits = RandomBits(1, SampleWords);
    return bits;
}

const Bits& Other() {
    static const Bits bits = RandomBits(2, SampleWords);
    return bits;
}

void ReadBoth() {
    benchmark::DoNotOptimize(ReadWords(Dest().data()) | ReadWords(Other().data()));
}
void ReadOne() {
    benchmark::DoNotOptimize(ReadWords(Dest().data()));
}

std::vector<std::uint16_t>& Numbers() {
    static std::vector<std::uint16_t> numbers(Events);
    return numbers;
}

template <int Count>
const Filters& SomeFilters() {
    static const Filters filters(Count);
    return filters;
}

template <int Count>
void NumberPlainly() {
    const Filters& filters = SomeFilters<Count>();
    for (int i = 0; i < Events; ++i) {
        int number = Count;
        while (number > 0 && !IsSet(filters.Pointers[static_cast<std::size_t>(number) - 1], i)) {
            --number;
        }
        Numbers()[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(number);
    }
}

template <int Count>
void RegisterNumbering() {
    RegisterPair("FilterNumbers" + std::to_string(Count), Events, NumberPlainly<Count>,
                 [] { NumberEvents(SomeFilters<Count>().Pointers, nullptr, Events, 0, Numbers().data()); });
}

Bits& Packed() {
    static Bits out(Words);
    return out;
}

void PackPlainly() {
    int position = 0;
    for (int i = 0; i < Events; ++i) {
        if (!IsSet(Dest().data(), i)) continue;
        const std::uint32_t bit = std::uint32_t{1} << (position % 32);
        std::uint32_t& word = Packed()[static_cast<std::size_t>(position) / 32];
        word = IsSet(Other().data(), i) ? word | bit : word & ~bit;
        ++position;
    }
}

[[maybe_unused]] const bool registered = [] {
    RegisterPair("FilterAnd", SampleEvents, ReadBoth,
                 [] { AndWords(Dest().data(), Other().data(), SampleWords); });
    RegisterPair("FilterOr", SampleEvents, ReadBoth,
                 [] { OrWords(Dest().data(), Other().data(), SampleWords); });
    RegisterPair("FilterNot", SampleEvents, ReadOne, [] { NotWords(Dest().data(), SampleWords); });
    RegisterPair("FilterCount", SampleEvents, ReadOne,
                 [] { benchmark::DoNotOptimize(CountBits(Dest().data(), SampleEvents)); });
    RegisterPair("FilterCountCommon", SampleEvents, ReadBoth, [] {
        benchmark::DoNotOptimize(CountCommonBits(Dest().data(), Other().data(), SampleEvents));
    });
    RegisterNumbering<1>();
    RegisterNumbering<8>();
    RegisterNumbering<64>();
    RegisterPair("FilterPack", Events, PackPlainly,
                 [] { PackSelectedBits(Dest().data(), Other().data(), 0, Events, Packed().data(), 0); });
    return true;
}();

}  // namespace
