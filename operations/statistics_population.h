// The values of a population as the statistics walk them, and the packed vectors that some of them fill.
#pragma once

#include <algorithm>
#include <cassert>
#include <span>
#include <vector>

#include <orvane/MemoryManage.h>
#include <orvane/OVSignalSection.h>
#include <orvane/Sections.h>

#include "operations/order_kernels.h"
#include "operations/section_vectors.h"

namespace Orvane {

using SignalSections = std::vector<SignalSection*>;
using FilterSections = std::vector<FilterSection*>;
using ValueSpan = std::span<const float>;

inline ValueSpan SpanOf(const SignalSection& section) {
    return {section.Values, static_cast<std::size_t>(std::max(section.Count, 0))};
}

inline std::vector<ValueSpan> SpansOf(const SignalSections& sections) {
    std::vector<ValueSpan> spans;
    spans.reserve(sections.size());
    for (const SignalSection* section : sections)
        spans.push_back(SpanOf(*section));
    return spans;
}

/// All values of a vector of sections, or only those that pass a gate. Refers to the caller's vectors.
class Population {
public:
    explicit Population(const SignalSections& sections) : sections_(sections) {}
    Population(const SignalSections& sections, const FilterSections& filters)
        : sections_(sections), filters_(&filters) {
        assert(filters.size() == sections.size());
    }

    bool IsGated() const { return filters_ != nullptr; }
    const SignalSections& Sections() const { return sections_; }

    /// Calls `visit(ValueSpan)` for the values in order, in runs of at most MaxRun that are valid during the
    /// call.
    template <class Visit>
    void ForEachRun(Visit visit) const;

    /// The same for the values in `range` only, as `form` shows them.
    template <class Form, class Visit>
    void ForEachRunInRange(Form form, ValueRange range, Visit visit) const;

    static constexpr int MaxRun = 4096;

private:
    const SignalSections& sections_;
    const FilterSections* filters_ = nullptr;
};

template <class Visit>
void Population::ForEachRun(Visit visit) const {
    float passed[MaxRun];
    for (std::size_t s = 0; s < sections_.size(); ++s) {
        const ValueSpan values = SpanOf(*sections_[s]);
        for (std::size_t start = 0; start < values.size(); start += MaxRun) {
            ValueSpan run = values.subspan(start, std::min<std::size_t>(MaxRun, values.size() - start));
            if (IsGated()) {
                const std::uint32_t* flags = (*filters_)[s]->Flags + start / 32;
                run = {passed, static_cast<std::size_t>(GatherGated(run, flags, passed))};
            }
            if (!run.empty()) visit(run);
        }
    }
}

template <class Form, class Visit>
void Population::ForEachRunInRange(Form form, ValueRange range, Visit visit) const {
    float kept[MaxRun];
    ForEachRun([&](ValueSpan run) {
        const Gathered gathered = GatherInRange(run, form, range, kept);
        visit(ValueSpan(kept, static_cast<std::size_t>(gathered.Kept)));
    });
}

/// Fills the sections of a vector one after another, each to the pool's `Capacity`. A section's `Count` is
/// written when it is full, the last one's at the end of the writer's life.
class PackedWriter {
public:
    PackedWriter(OVSignalSection& signals, SignalSections& out)
        : signals_(signals), out_(out), section_(signals.GetNextSection(out, nullptr)) {}
    PackedWriter(const PackedWriter&) = delete;
    PackedWriter& operator=(const PackedWriter&) = delete;
    ~PackedWriter() { section_->Count = written_; }

    /// Where the next values go, and how many of them.
    float* Free() const { return section_->Values + written_; }
    int Room() const { return capacity_ - written_; }

    /// Takes the values written to Free(), no more than Room(), as the vector's next ones.
    void Advance(int count) {
        written_ += count;
        if (written_ < capacity_) return;
        section_->Count = capacity_;
        section_ = signals_.GetNextSection(out_, section_);
        written_ = 0;
    }

    void Append(ValueSpan values) {
        while (!values.empty()) {
            const auto count = std::min(values.size(), static_cast<std::size_t>(Room()));
            std::copy_n(values.data(), count, Free());
            Advance(static_cast<int>(count));
            values = values.subspan(count);
        }
    }

private:
    OVSignalSection& signals_;
    SignalSections& out_;
    SignalSection* section_;
    int capacity_ = MemoryManage::GetCapacity();
    int written_ = 0;
};

using TemporarySections = TemporaryVector<SignalSection>;

/// Copies the values in `range`, in order, into `out`.
inline void CopyRange(OVSignalSection& signals, const Population& population, ValueRange range,
                      SignalSections& out) {
    PackedWriter writer(signals, out);
    population.ForEachRunInRange(AsItStands{}, range, [&](ValueSpan run) { writer.Append(run); });
}

}  // namespace Orvane
