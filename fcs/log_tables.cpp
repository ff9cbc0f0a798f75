#include "fcs/log_tables.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>

#include <orvane/Exceptions.h>

namespace Orvane {
namespace {

constexpr int EventsToPay = 1024;

// Zeros of both signs give different values.
bool HasSameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

}  // namespace

LogTables::LogTables(const OVFCSIntParFormat& format, int parCount, int events) {
    if (events < EventsToPay) return;
    try {
        Add(format, parCount);
    } catch (OutOfMemoryException* error) {  // the parameters that are left do without
        delete error;
    } catch (const std::bad_alloc&) {
        byParameter_.clear();
    }
}

void LogTables::Add(const OVFCSIntParFormat& format, int parCount) {
    byParameter_.resize(static_cast<std::size_t>(parCount));
    for (int p = 0; p < parCount; ++p) {
        if (!format.IsLog[p]) continue;
        LogTable*& table = byParameter_[static_cast<std::size_t>(p)];
        table = Find(format.Scale[p], format.Offset[p]);
        if (table != nullptr) continue;
        PooledColumn column;
        const LogTable fresh{format.Scale[p], format.Offset[p], column.Get(), MemoryManage::GetCapacity()};
        table = &entries_.emplace_back(Entry{std::move(column), fresh}).Table;
    }
}

LogTable* LogTables::Find(double scale, double offset) {
    for (Entry& entry : entries_) {
        if (HasSameBits(entry.Table.Scale, scale) && HasSameBits(entry.Table.Offset, offset)) {
            return &entry.Table;
        }
    }
    return nullptr;
}

}  // namespace Orvane
