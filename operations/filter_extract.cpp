// Packing the gate results of a population's events.
#include <algorithm>
#include <cassert>

#include <orvane/MemoryManage.h>
#include <orvane/OVFilterSection.h>

#include "operations/filter_kernels.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

/// The sections being written, one per gate. They fill in step, because all gates give a bit for the same
/// events.
class PackedOutputs {
public:
    PackedOutputs(IOVFilterSection& operations, std::vector<std::vector<FilterSection*>*>& outputs)
        : operations_(operations), outputs_(outputs), current_(outputs.size(), nullptr) {
        TakeNext();
    }

    /// Packs the events of section `position` of every gate that `base` selects.
    void Append(const FilterSection& base, const std::vector<std::vector<FilterSection*>*>& gates,
                std::size_t position) {
        const int selected = CountBits(base.Flags, base.Count);
        int begin = 0;
        for (int done = 0; done < selected;) {
            const int fitting = std::min(selected - done, capacity_ - filled_);
            const int end = PrefixWithSetBits(base.Flags, base.Count, done + fitting);
            for (std::size_t g = 0; g < gates.size(); ++g) {
                PackSelectedBits(base.Flags, (*gates[g])[position]->Flags, begin, end, current_[g]->Flags,
                                 filled_);
            }
            begin = end;
            done += fitting;
            filled_ += fitting;
            if (filled_ < capacity_) continue;
            StoreCounts();
            TakeNext();
        }
    }

    /// Gives the sections being written their counts.
    void StoreCounts() {
        for (FilterSection* section : current_) {
            section->Count = filled_;
            section->CalcTrueCount();
        }
    }

private:
    void TakeNext() {
        for (std::size_t g = 0; g < outputs_.size(); ++g) {
            current_[g] = operations_.GetNextSection(*outputs_[g], current_[g]);
            current_[g]->SetAll(false);
        }
        filled_ = 0;
    }

    IOVFilterSection& operations_;
    std::vector<std::vector<FilterSection*>*>& outputs_;
    std::vector<FilterSection*> current_;
    int capacity_ = MemoryManage::GetCapacity();
    int filled_ = 0;
};

}  // namespace

void OVFilterSection::ExtratTrueFilter(std::vector<FilterSection*>& base,
                                       std::vector<std::vector<FilterSection*>*>& gates,
                                       std::vector<std::vector<FilterSection*>*>& outputs) {
    assert(gates.size() == outputs.size());
    PackedOutputs packed(*this, outputs);
    for (std::size_t i = 0; i < base.size(); ++i) {
        packed.Append(*base[i], gates, i);
    }
    packed.StoreCounts();
}

}  // namespace Orvane
