// The event loops of compensation. The columns of a section share cache sets and evict each other, so the
// kernel copies 64 events of every channel into dense workspace and works off all rows from there.
#pragma once

#include <span>

namespace Orvane {

constexpr int CompensationBlock = 64;

/// A channel as the rows read it. Its differences are `Column` - `Baseline`, in float. A channel that no row
/// reads may have no column.
struct CompensationChannel {
    const float* Column = nullptr;
    float Baseline = 0.0F;
};

/// `Coefficient` x the difference of channel `Channel` is subtracted.
struct SpillTerm {
    double Coefficient;
    int Channel;
};

/// Corrected = the value of channel `Channel` x `Diagonal` + `Offset` - the terms, subtracted one after
/// another in double, narrowed to float.
struct CompensationRow {
    int Channel;
    double Diagonal;
    double Offset;
    std::span<const SpillTerm> Terms;
    float* Corrected;
};

/// Workspace for one channel.
struct alignas(64) StagedChannel {
    double Values[CompensationBlock];
    double Differences[CompensationBlock];
};

/// Works off the rows for the first `events` events. A column that one row writes must not be another's to
/// read or write; a row may write the column that it corrects. `staged` has an element for each channel.
void CompensateRows(std::span<const CompensationChannel> channels, std::span<const CompensationRow> rows,
                    int events, std::span<StagedChannel> staged);

/// A row without terms: scaled[e] = column[e] x `diagonal` + `offset` in double, narrowed to float. It
/// disturbs no other column, and may be done in place.
void ScaleColumn(const float* column, int events, double diagonal, double offset, float* scaled);

/// differences[e] = column[e] - baseline. The columns are different ones.
void SubtractBaseline(const float* column, int events, float baseline, float* differences);

}  // namespace Orvane
