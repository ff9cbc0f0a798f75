// The gates, all in one frame: make the filters parallel to the signals, file the events of each section by
// the gate's rule, recount.
#include <orvane/OVFilter.h>

#include <array>
#include <cassert>
#include <type_traits>

#include "gate/hinged_rule.h"
#include "gate/polygon_rule.h"
#include "gate/threshold_kernels.h"
#include "operations/section_vectors.h"

namespace Orvane {
namespace {

using Signals = std::vector<SignalSection*>;
using Filters = std::vector<FilterSection*>;

enum class Recount { No, Yes };

/// The filters of each region, null for one that the gate is not asked for; and last, those that get no
/// events.
template <class Rule>
using Outputs = std::array<Filters*, Rule::Regions + 1>;

/// The outputs of a gate that is asked for one region; any other number is none.
template <class Rule>
Outputs<Rule> OnlyRegion(Filters& filters, int region) {
    Outputs<Rule> outputs{};
    const auto at = static_cast<std::size_t>(region);
    outputs[at < Rule::Regions ? at : Rule::Regions] = &filters;
    return outputs;
}

template <class Rule>
RegionWords<Rule::Regions> WordsOf(const Outputs<Rule>& outputs, std::size_t section) {
    RegionWords<Rule::Regions> words{};
    for (std::size_t region = 0; region < words.size(); ++region) {
        if (outputs[region] != nullptr) words[region] = (*outputs[region])[section]->Flags;
    }
    return words;
}

/// `makeRule` is called once the filters are parallel to the signals and there is something to file.
template <class MakeRule, class Rule = std::invoke_result_t<MakeRule>>
void FileEvents(OVFilterSection& operations, Signals& xs, const Signals& ys, const Outputs<Rule>& outputs,
                MakeRule makeRule, Recount recount = Recount::Yes) {
    for (Filters* filters : outputs) {
        if (filters != nullptr) operations.SynchronousVectorSection(*filters, xs);
    }
    if (xs.empty()) return;
    assert(ys.size() >= xs.size());
    const Rule rule = makeRule();
    for (std::size_t i = 0; i < xs.size(); ++i) {
        assert(ys[i]->Count >= xs[i]->Count);
        rule(xs[i]->Values, ys[i]->Values, xs[i]->Count, WordsOf<Rule>(outputs, i));
        if (recount == Recount::No) continue;
        for (Filters* filters : outputs) {
            if (filters != nullptr) (*filters)[i]->CalcTrueCount();
        }
    }
}

}  // namespace

void OVFilter::Filter_LineSegment(Signals& signals, Filters& filters, float low, float high) {
    FileEvents(
        filterSection_, signals, signals, {&filters},
        [&] {
            return SegmentRule{low, high};
        },
        Recount::No);
}

void OVFilter::Filter_Vertical(Signals& signals, Filters& filters, float cut, int side) {
    const int region = side == 0 ? CutRule::Left : CutRule::Right;
    FileEvents(filterSection_, signals, signals, OnlyRegion<CutRule>(filters, region),
               [&] { return CutRule{cut}; });
}

void OVFilter::Filter_Vertical_Fast(Signals& signals, Filters& left, Filters& right, float cut) {
    FileEvents(filterSection_, signals, signals, {&left, nullptr, &right}, [&] { return CutRule{cut}; });
}

void OVFilter::Filter_Rectangle(Signals& xs, Signals& ys, Filters& filters, float xMin, float xMax,
                                float yMin, float yMax) {
    FileEvents(filterSection_, xs, ys, {&filters}, [&] { return RectangleRule{xMin, xMax, yMin, yMax}; });
}

void OVFilter::Filter_Quadrant(Signals& xs, Signals& ys, Filters& filters, float xCut, float yCut,
                               int quadrant) {
    FileEvents(filterSection_, xs, ys, OnlyRegion<QuadrantRule>(filters, quadrant), [&] {
        return QuadrantRule{xCut, yCut};
    });
}

void OVFilter::Filter_Quadrant_Fast(Signals& xs, Signals& ys, Filters& filters0, Filters& filters1,
                                    Filters& filters2, Filters& filters3, float xCut, float yCut) {
    FileEvents(filterSection_, xs, ys, {&filters0, &filters1, &filters2, &filters3}, [&] {
        return QuadrantRule{xCut, yCut};
    });
}

void OVFilter::Filter_Hinged(Signals& xs, Signals& ys, Filters& filters, OVPoint* points, int count,
                             int region) {
    FileEvents(filterSection_, xs, ys, OnlyRegion<HingedRule>(filters, region),
               [&] { return HingedRule(points, count); });
}

void OVFilter::Filter_Hinged_Fast(Signals& xs, Signals& ys, Filters& filters0, Filters& filters1,
                                  Filters& filters2, Filters& filters3, OVPoint* points, int count) {
    FileEvents(filterSection_, xs, ys, {&filters0, &filters1, &filters2, &filters3},
               [&] { return HingedRule(points, count); });
}

void OVFilter::Filter_Ploygon(Signals& xs, Signals& ys, Filters& filters, OVPoint* vertices, int count) {
    FileEvents(filterSection_, xs, ys, {&filters},
               [&] { return PolygonRule(vertices, count, PolygonRule::MethodFor(TotalCount(xs), count)); });
}

}  // namespace Orvane
