#include "plots/drawn_events.h"

#include <limits>

#include <orvane/OVFilterSection.h>
#include <orvane/OVSignalSection.h>

#include "gating/populations.h"
#include "text/numbers.h"

namespace Host {
namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

std::uint64_t Counted(long count) {
    return static_cast<std::uint64_t>(count);
}

std::string Describe(std::uint64_t drawn, std::uint64_t shown, std::uint64_t total, std::size_t samples) {
    std::string text = Grouped(shown);
    if (shown != total) text.append(" of ").append(Grouped(total));
    text += total == 1 ? " event" : " events";
    if (samples > 1) text.append(" in ").append(std::to_string(samples)).append(" files");
    if (drawn != shown) text.append(", ").append(Grouped(shown - drawn)).append(" without a number");
    return text;
}

}  // namespace

DrawnEvents::DrawnEvents(const PlotEvents& events)
    : events_(events), members_(*events.x, -Infinity, Infinity) {
    if (events.y != nullptr) {
        Membership numbers(*events.y, -Infinity, Infinity);
        members_.And(numbers);
    }
    if (events.population != nullptr) members_.And(*events.population);
    count_ = members_.Recount();
    total_ = Counted(Orvane::OVSignalSection().GetTotalCount(*events.x));
    shown_ = total_;
    if (events.population != nullptr) {
        shown_ = Counted(Orvane::OVFilterSection().GetTrueTotalCount(*events.population));
    }
}

std::unique_ptr<Orvane::OVPlotData> DrawnEvents::Describe(const std::vector<PlotGate>& gates) {
    auto data = std::make_unique<Orvane::OVPlotData>();
    data->XSections = events_.x;
    data->YSections = events_.y;
    data->PopulationFilters = &members_.Sections();
    data->Gates = new std::vector<Orvane::OVPlotData_GateInfo*>();
    data->Gates->reserve(gates.size() + 1);
    data->Gates->push_back(new Orvane::OVPlotData_GateInfo());
    for (const PlotGate& gate : gates) {
        data->Gates->push_back(new Orvane::OVPlotData_GateInfo());
        data->Gates->back()->Filters = gate.members;
    }
    return data;
}

std::string DrawnEvents::LabelWithCount() const {
    std::string label = events_.label;
    return label.append("  ").append(Grouped(shown_));
}

std::string DrawnEvents::LabelWithShare(const PlotGate& gate) const {
    Orvane::OVFilterSection operations;
    const long inside = events_.population == nullptr
                            ? operations.GetTrueTotalCount(*gate.members)
                            : operations.GetTrueTotalCount(*gate.members, *events_.population);
    std::string label = gate.label;
    return label.append("  ").append(Percentage(Counted(inside), shown_));
}

void DrawnEvents::AddOffScale(const Axis& x, const Axis& y, OffScale& sums) {
    sums.left += CountBetween(*events_.x, -Infinity, LargestBelow(x.min));
    sums.right += CountBetween(*events_.x, SmallestFrom(x.max), Infinity);
    if (events_.y == nullptr) return;
    sums.below += CountBetween(*events_.y, -Infinity, LargestBelow(y.min));
    sums.above += CountBetween(*events_.y, SmallestFrom(y.max), Infinity);
}

std::uint64_t DrawnEvents::CountBetween(std::vector<Orvane::SignalSection*>& values, float min, float max) {
    Membership inside(values, min, max);
    inside.And(members_);
    return inside.Recount();
}

Figure BeginFigure(const PlotFrame& frame, std::span<DrawnEvents> samples) {
    Figure figure;
    figure.size = frame.size;
    figure.title = frame.title;
    figure.x = frame.x;
    figure.y = frame.y;
    std::uint64_t drawn = 0;
    std::uint64_t shown = 0;
    std::uint64_t total = 0;
    for (DrawnEvents& sample : samples) {
        drawn += sample.Count();
        shown += sample.Population();
        total += sample.Sample();
        sample.AddOffScale(frame.x, frame.y, figure.offScale);
    }
    figure.subtitle = Describe(drawn, shown, total, samples.size());
    return figure;
}

int DotWidth(const PictureSize& size, std::uint64_t events) {
    constexpr std::uint64_t Few = 2000;
    constexpr std::uint64_t Many = 50000;
    if (events < Few) return 3 * size.scale;
    return size.scale * (events < Many ? 2 : 1);
}

}  // namespace Host
