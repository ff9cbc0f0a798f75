// Temporary tables for the logarithmic parameters of integer DATA: most samples have some thousand different
// words, and a power of ten costs as much as moving a whole event.
#pragma once

#include <list>
#include <vector>

#include "fcs/kernels.h"
#include "memory/pooled.h"

namespace Orvane {

/// Holds the tables while a sample is read. Parameters with the same scale share one; a parameter has none
/// where there are too few events for it to pay, or when the pool is exhausted. Never throws.
class LogTables {
public:
    LogTables(const OVFCSIntParFormat& format, int parCount, int events);

    /// One entry per parameter, null for one without a table; null when there are no tables.
    LogTable* const* Get() const { return byParameter_.empty() ? nullptr : byParameter_.data(); }

private:
    struct Entry {
        PooledColumn Column;
        LogTable Table;
    };

    void Add(const OVFCSIntParFormat& format, int parCount);
    LogTable* Find(double scale, double offset);

    std::list<Entry> entries_;
    std::vector<LogTable*> byParameter_;
};

}  // namespace Orvane
