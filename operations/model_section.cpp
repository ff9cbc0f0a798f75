#include <cassert>

#include <orvane/MemoryManage.h>
#include <orvane/OVModelSection.h>

#include "operations/model_kernels.h"
#include "operations/section_vectors.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

Counters CountersOf(CountSection& counts) {
    return {counts.Counts, counts.Capacity};
}

}  // namespace

void OVModelSection::ConvertSignalToModel(std::vector<ModelSection*>& models,
                                          std::vector<SignalSection*>& signals, float max, float min) {
    SynchronousVectorSection(models, signals);
    const float scale = 1.0F / ((max - min) / static_cast<float>(MemoryManage::GetCapacityInt()));
    for (std::size_t i = 0; i < signals.size(); ++i) {
        // Deliberate: `min` sets the scale only; values are already relative to the lower end of the range.
        ScaleToModel(signals[i]->Values, signals[i]->Count, 0.0F, scale, models[i]->Values);
    }
}

long OVModelSection::GetTotalCount(std::vector<ModelSection*>& models) {
    return TotalCount(models);
}

void OVModelSection::StatisticsCountSection(ModelSection* model, FilterSection* filter,
                                            CountSection& counts) {
    CountSelected(model->Values, filter->Flags, model->Count, CountersOf(counts));
}

void OVModelSection::StatisticsCountSection(ModelSection* model, CountSection& counts) {
    CountNumbers(model->Values, model->Count, CountersOf(counts));
}

void OVModelSection::StatisticsCountSection(std::vector<ModelSection*>& models,
                                            std::vector<FilterSection*>& filters, CountSection& counts) {
    if (counts.Counts == nullptr) counts.Initial();
    for (std::size_t i = 0; i < models.size(); ++i) {
        StatisticsCountSection(models[i], filters[i], counts);
    }
}

void OVModelSection::StatisticsCountSection(std::vector<ModelSection*>& models, CountSection& counts) {
    if (counts.Counts == nullptr) counts.Initial();
    for (ModelSection* model : models) {
        StatisticsCountSection(model, counts);
    }
}

void OVModelSection::StatisticsCountSection_Virtual(ModelSection* model, FilterSection* filter, int start,
                                                    int group, CountSection& counts) {
    assert(group >= 1);
    if (filter->TrueCount == 0) return;
    // Deliberate: counting begins with the whole word, whichever of its bits `start` is.
    CountSelectedGroups(model->Values, filter->Flags + start / 32, model->Count / group, group,
                        CountersOf(counts));
}

void OVModelSection::ReleaseVectorSection(std::vector<ModelSection*>& models) {
    ReleaseFromFirst(models);
}

void OVModelSection::SynchronousVectorSection(std::vector<ModelSection*>& models,
                                              std::vector<SignalSection*>& signals) {
    for (std::size_t i = 0; i < signals.size(); ++i) {
        if (i == models.size()) AppendNew(models, [](ModelSection& model) { model.Initial(); });
        models[i]->Index = static_cast<int>(i);
        models[i]->Count = signals[i]->Count;
    }
    while (models.size() > signals.size())
        TakeLast(models)->Release();
}

}  // namespace Orvane
