// The pool: where packets come from, what is refused, how it grows, its log.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "memory/pool.h"
#include "memory/pool_access.h"
#include "memory/pooled.h"
#include "tests/support/exceptions.h"
#include "tests/support/pool.h"
#include "tests/support/pool_kinds.h"

namespace Orvane {
namespace {

using namespace Testing;
using Manage = MemoryManage;

constexpr const char* AtOnce = "Out of memory!";
constexpr const char* InTheEnd = "Out of memory.";
constexpr const char* Nothing = "nothing thrown";

/// "segment.block.packet", segments in order of creation.
std::string PlaceOf(void* p, const Storage& kind) {
    Pool& pool = ThePool();
    const int segment = pool.AddressIndex.FindIndex(p);
    const auto* start = pool.Segments[static_cast<std::size_t>(segment)]->Address;
    const auto offset = static_cast<unsigned char*>(p) - start;
    const int blockSize = pool.Settings.BlockSize();
    std::ostringstream place;
    place << segment << '.' << offset / blockSize << '.' << offset % blockSize / kind.Bytes();
    return place.str();
}

// Segments have four blocks; a block holds 1 float, 2 short, 16 int or 32 bit packets. "k=place" takes from
// kind k and expects the packet there; "-n" returns the n-th one taken.
const char* const Placements[] = {
    // the lowest free block comes first; a full segment is left
    "f=0.0.0 f=0.1.0 f=0.2.0 -1 f=0.1.0 f=0.3.0 f=1.0.0",
    // kinds do not share segments
    "f=0.0.0 s=1.0.0 i=2.0.0 b=3.0.0 i=2.0.1 b=3.0.1 r=4.0.0",
    // the lowest free packet of the first partly used block; a block that was full goes to the end
    "s=0.0.0 s=0.0.1 s=0.1.0 -0 s=0.1.1 s=0.0.0 s=0.2.0 -5 s=0.2.0",
    // a segment that was full goes to the end
    ("f=0.0.0 f=0.1.0 f=0.2.0 f=0.3.0 f=1.0.0 f=1.1.0 f=1.2.0 f=1.3.0 f=2.0.0 -5 -2 "
     "f=2.1.0 f=2.2.0 f=2.3.0 f=1.1.0 f=0.2.0 f=3.0.0"),
    // segments are free in the order of their last return
    "f=0.0.0 s=1.0.0 i=2.0.0 -1 -0 -2 b=1.0.0 r=0.0.0 f=2.0.0",
    // a returned raw segment is cut like any other, and a block changes its kind
    "r=0.0.0 f=1.0.0 -0 b=0.0.0 b=0.0.1 -1 r=1.0.0 -2 -3 s=0.0.0 s=0.0.1 -5 -6 i=0.0.0 i=0.0.1"};

TEST(Pool, PlacesPacketsByTheListRules) {
    for (const char* steps : Placements) {
        SCOPED_TRACE(steps);
        const SmallPool pool;
        std::vector<std::pair<const Storage*, void*>> taken;
        std::istringstream script(steps);
        for (std::string step; script >> step;) {
            if (step[0] == '-') {
                auto& [kind, packet] = taken[std::stoul(step.substr(1))];
                kind->Return(std::exchange(packet, nullptr));
            } else {
                const Storage& kind = KindOf(step[0]);
                taken.emplace_back(&kind, kind.Take());
                EXPECT_EQ(PlaceOf(taken.back().second, kind), step.substr(2));
            }
            EXPECT_EQ(FindPoolFault(), "");
        }
        for (const auto& [kind, packet] : taken)
            if (packet != nullptr) kind->Return(packet);
    }
}

struct GrowthCase {
    const char* Kinds;  ///< for which it is so
    bool AllocatorFails, AtThreshold;
    char Answer;          ///< of the handler: y or n; '-' when there is none
    std::size_t Returns;  ///< float packets that the handler returns
    const char* Thrown;
    int HandlerCalls, SegmentsObtained;
};

const GrowthCase GrowthCases[] = {
    {"fsibr", true, false, '-', 0, AtOnce, 0, 0},  // nobody to ask
    {"fsibr", false, true, '-', 0, Nothing, 0, 1},
    {"fsibr", false, false, 'y', 8, Nothing, 0, 1},  // no need to ask
    {"fsibr", true, false, 'n', 0, AtOnce, 1, 0},
    {"fsib", true, true, 'n', 0, AtOnce, 2, 0},
    {"fsib", true, false, 'y', 0, InTheEnd, 2, 0},  // an empty promise, twice
    {"fsib", true, true, 'y', 0, InTheEnd, 4, 0},
    {"fsib", false, true, 'y', 0, Nothing, 1, 1},
    {"fsib", true, false, 'y', 8, Nothing, 1, 0},  // returned segments serve
    {"fsib", false, true, 'y', 8, Nothing, 1, 0},
    {"fsib", false, true, 'n', 8, Nothing, 1, 1},
    {"f", true, false, 'y', 1, Nothing, 1, 0},  // so does one column, but only a column
    {"f", false, true, 'y', 1, Nothing, 1, 1},
    {"sib", true, false, 'y', 1, InTheEnd, 2, 0},
    {"r", true, true, 'y', 8, InTheEnd, 1, 0},  // raw: one attempt, no threshold
    {"r", false, true, 'y', 8, Nothing, 0, 1}};

/// The case in hand, what its handler can return, how often it was asked.
const GrowthCase* growth = nullptr;
std::vector<PooledColumn> returnable;
int handlerCalls = 0;

bool Handle() {
    ++handlerCalls;
    returnable.resize(returnable.size() - std::min(growth->Returns, returnable.size()));
    return growth->Answer == 'y';
}

/// Takes one packet beside two segments that are full of floats.
void ExpectGrowth(const GrowthCase& given, const Storage& kind) {
    const SmallPool pool;
    growth = &given;
    returnable = std::vector<PooledColumn>(8);
    handlerCalls = 0;
    const std::int64_t newSize = Manage::GetNewSize();
    Manage::SetUpperSize(2 * newSize + (given.AtThreshold ? 1 : 2));
    Manage::SetCallOutOfMemory(given.Answer == '-' ? nullptr : Handle);
    const FailingAllocator allocator(given.AllocatorFails ? 1 : 1000);

    void* taken = nullptr;
    EXPECT_EQ(MessageOf<OutOfMemoryException>([&] { taken = kind.Take(); }), given.Thrown);
    EXPECT_EQ(handlerCalls, given.HandlerCalls);
    EXPECT_EQ(Manage::GetNewSize() - newSize, given.SegmentsObtained * Manage::GetSegmentSize());
    EXPECT_EQ(Manage::GetUseSize(), CountBytesHandedOut());
    EXPECT_EQ(FindPoolFault(), "");
    if (taken != nullptr) kind.Return(taken);
    returnable.clear();
}

TEST(Pool, GrowsAsksAndFailsAsStated) {
    for (const GrowthCase& given : GrowthCases) {
        SCOPED_TRACE(&given - GrowthCases);
        for (const char letter : std::string(given.Kinds))
            ExpectGrowth(given, KindOf(letter));
    }
    Manage::SetCallOutOfMemory(nullptr);
    Manage::SetUpperSize(std::int64_t{6} << 30);
}

TEST(Pool, SettingUpLeavesOutSegmentsThatTheAllocatorDoesNotHave) {
    const SmallPool pool;
    const FailingAllocator allocator(2, 1);
    Manage::SetCallOutOfMemory([] { return true; });
    Manage::InitMemoryManage(1024, 4, 3, 64, 4);
    Manage::SetCallOutOfMemory(nullptr);
    EXPECT_EQ(Statistics().FreeCount, 2);
    EXPECT_EQ(Manage::GetNewSize(), 2048);
}

/// A static constructor of a host may already use the pool, with the default sizes.
const auto [obtainedFor32, obtainedFor33] = [] {
    const std::vector<PooledColumn> columns(32);
    const std::int64_t before = Manage::GetNewSize();
    const PooledColumn oneMore;
    return std::pair(before, Manage::GetNewSize());
}();

TEST(Pool, PutsThirtyTwoColumnsIntoASegmentEvenInStaticConstructors) {
    EXPECT_EQ(obtainedFor32, 8 << 20);
    EXPECT_EQ(obtainedFor33, 16 << 20);
}

/// Used as it stands on every system: where backslashes separate nothing, it is a file of the current folder.
const std::filesystem::path LogFile = "c:\\UnitTest\\logForMemory.txt";

/// The log's contents with every digit in brackets, of a time of day, as 0.
std::string LogText() {
    std::ifstream file(LogFile, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(file), {});
    bool inTime = false;
    for (char& c : text) {
        inTime = c == '(' || (inTime && c != ')');
        if (inTime && c >= '0' && c <= '9') c = '0';
    }
    return text;
}

TEST(Pool, LogsItsColumnsAndStartsOverAfterClosing) {
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path directory =
        ::testing::TempDir() + "orvane_log_" + std::to_string(std::random_device()());
    std::filesystem::create_directory(directory);
    std::filesystem::current_path(directory);
    const bool hasFolder = !LogFile.has_parent_path() || std::filesystem::exists(LogFile.parent_path());
    std::filesystem::create_directories(LogFile);  // a folder in the log's place: nothing is written
    PoolAccess::WriteLog();
    PoolAccess::CloseLog();
    EXPECT_TRUE(std::filesystem::remove(LogFile));

    const SmallPool pool(65536, 4, 9);  // of 1 MiB each
    const std::string header =
        "No.\tTime\tNew size(M)\tUse size(M)\tSegment Count\tFree Count\t NoFull "
        "float\tshort\tint\tbitarray\n";
    void* raw = Manage::NewSegment();
    {
        std::vector<PooledColumn> columns(12);  // three segments full, then not
        std::vector<PooledShorts> shorts(16);   // two
        const PooledInts counters;
        for (const std::size_t i : {0U, 4U, 8U})
            Manage::FreeFloatArray(columns[i].Release());
        for (const std::size_t i : {0U, 1U, 8U, 9U})
            Manage::FreeShortArray(shorts[i].Release());
        PoolAccess::WriteLog();
    }
    // Nine columns, twelve half ones, a counter array and a whole segment: 4.8 MiB.
    EXPECT_EQ(LogText(), header + "9\t(0000-00-00 00:00:00)\t9\t4\t9\t2\t3\t2\t2\t1\n");
    Manage::FreeSegment(raw);
    PoolAccess::CloseLog();
    PoolAccess::WriteLog();
    PoolAccess::CloseLog();
    EXPECT_EQ(LogText(), header + "9\t(0000-00-00 00:00:00)\t9\t0\t9\t9\t0\t0\t0\t0\n");
    std::filesystem::current_path(before);
    std::filesystem::remove_all(directory);
    if (!hasFolder) std::filesystem::remove_all(LogFile.parent_path());
}

}  // namespace
}  // namespace Orvane
