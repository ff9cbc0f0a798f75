// Spill-over compensation: what of a set each row needs, and in which order the rows are worked off.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <span>
#include <vector>

#include <orvane/OVCompensation.h>

#include "compensation/kernels.h"
#include "memory/pooled.h"

namespace Orvane {
namespace {

/// A compensation set applied to a pair of sections, ready for the kernels.
struct CompensationPlan {
    std::vector<CompensationChannel> Channels;
    std::vector<SpillTerm> Terms;
    std::vector<CompensationRow> Rows;
};

/// Appends the coefficients of row `i` that contribute. NaN does not, any more than 0 does.
std::span<const SpillTerm> AppendTerms(const OVMatrix& matrix, int i, int size,
                                       std::vector<SpillTerm>& terms) {
    const std::size_t first = terms.size();
    for (int j = 0; j < size; ++j) {
        const double coefficient = matrix.GetValue(i, j);
        if (j != i && std::fabs(coefficient) > 0) terms.push_back({coefficient, j});
    }
    return std::span(terms).subspan(first);
}

CompensationPlan MakePlan(EventSection& output, EventSection& input, const OVMatrix& matrix,
                          const std::vector<float>& baselines, const std::vector<int>& channels) {
    CompensationPlan plan;
    const std::size_t size = channels.size();
    plan.Terms.reserve(size * size);  // the rows refer to them
    for (std::size_t i = 0; i < size; ++i) {
        const int row = static_cast<int>(i);
        const double diagonal = matrix.GetValue(row, row);
        const double baseline = static_cast<double>(baselines[i]);
        plan.Channels.push_back({input[channels[i]], baselines[i]});
        plan.Rows.push_back({row, diagonal, baseline - baseline * diagonal,
                             AppendTerms(matrix, row, static_cast<int>(size), plan.Terms),
                             output[channels[i]]});
    }
    return plan;
}

bool IsWrittenBy(std::span<const CompensationRow> rows, const float* column) {
    return std::any_of(rows.begin(), rows.end(),
                       [column](const CompensationRow& row) { return row.Corrected == column; });
}

/// Whether a column is written that is also read, or written twice, so that the order of the rows shows.
bool SharesColumns(const CompensationPlan& plan) {
    const std::span<const CompensationRow> rows(plan.Rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (IsWrittenBy(rows, plan.Channels[i].Column)) return true;
        if (IsWrittenBy(rows.first(i), rows[i].Corrected)) return true;
    }
    return false;
}

/// All rows side by side, block after block of events. Channels that only rows without terms read are left
/// to these.
void CompensateTogether(const CompensationPlan& plan, int events) {
    std::vector<CompensationChannel> channels(plan.Channels.size());
    std::vector<CompensationRow> rows;
    const auto read = [&](int c) {
        channels[static_cast<std::size_t>(c)] = plan.Channels[static_cast<std::size_t>(c)];
    };
    for (const CompensationRow& row : plan.Rows) {
        if (row.Terms.empty()) {
            const float* column = plan.Channels[static_cast<std::size_t>(row.Channel)].Column;
            ScaleColumn(column, events, row.Diagonal, row.Offset, row.Corrected);
            continue;
        }
        rows.push_back(row);
        read(row.Channel);
        for (const SpillTerm& term : row.Terms)
            read(term.Channel);
    }
    std::vector<StagedChannel> staged(channels.size());
    CompensateRows(channels, rows, events, staged);
}

/// The differences of a section, formed when they are first asked for.
class KeptDifferences {
public:
    KeptDifferences(const CompensationPlan& plan, int events)
        : plan_(plan), events_(events), kept_(plan.Channels.size()) {}

    bool Has(int c) const { return kept_[static_cast<std::size_t>(c)].Column != nullptr; }

    /// The differences of channel `c` as a channel without baseline.
    CompensationChannel Of(int c) {
        CompensationChannel& kept = kept_[static_cast<std::size_t>(c)];
        if (!Has(c)) {
            const CompensationChannel& channel = plan_.Channels[static_cast<std::size_t>(c)];
            float* column = columns_.emplace_back().Get();
            SubtractBaseline(channel.Column, events_, channel.Baseline, column);
            kept.Column = column;
        }
        return kept;
    }

private:
    const CompensationPlan& plan_;
    int events_;
    std::vector<CompensationChannel> kept_;
    std::vector<PooledColumn> columns_;
};

/// Row after row over the whole section: a column that is written may be read by the same row, and before.
void CompensateRowByRow(const CompensationPlan& plan, int events) {
    KeptDifferences differences(plan, events);
    std::vector<StagedChannel> staged(plan.Channels.size());
    for (std::size_t i = 0; i < plan.Rows.size(); ++i) {
        const CompensationRow& row = plan.Rows[i];
        [[maybe_unused]] const auto before = std::span(plan.Rows).first(i);
        std::vector<CompensationChannel> channels(plan.Channels.size());
        assert(!IsWrittenBy(before, plan.Channels[i].Column));
        channels[i] = plan.Channels[i];
        for (const SpillTerm& term : row.Terms) {
            const auto c = static_cast<std::size_t>(term.Channel);
            assert(differences.Has(term.Channel) || !IsWrittenBy(before, plan.Channels[c].Column));
            channels[c] = differences.Of(term.Channel);
        }
        CompensateRows(channels, {&row, 1}, events, staged);
    }
}

}  // namespace

void OVCompensation::CalcCompensation(std::vector<EventSection*>& outputs, std::vector<EventSection*>& inputs,
                                      const OVMatrix& matrix1, std::vector<float>& baselines1,
                                      std::vector<int>& channels1, const OVMatrix& matrix2,
                                      std::vector<float>& baselines2, std::vector<int>& channels2) {
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        CalcCompensation_Section(outputs[i], inputs[i], matrix1, baselines1, channels1, matrix2, baselines2,
                                 channels2);
    }
}

void OVCompensation::CalcCompensation_Section(EventSection* output, EventSection* input,
                                              const OVMatrix& matrix1, std::vector<float>& baselines1,
                                              std::vector<int>& channels1, const OVMatrix& matrix2,
                                              std::vector<float>& baselines2, std::vector<int>& channels2) {
    if (!channels1.empty()) CalcCompensationSection(output, input, matrix1, baselines1, channels1);
    if (!channels2.empty()) CalcCompensationSection(output, input, matrix2, baselines2, channels2);
}

void OVCompensation::CalcCompensationSection(EventSection* output, EventSection* input,
                                             const OVMatrix& matrix, std::vector<float>& baselines,
                                             std::vector<int>& channels) const {
    if (input->Count == 0) return;  // its columns may be null
    const CompensationPlan plan = MakePlan(*output, *input, matrix, baselines, channels);
    if (SharesColumns(plan)) return CompensateRowByRow(plan, input->Count);
    CompensateTogether(plan, input->Count);
}

}  // namespace Orvane
