#include "gating/column.h"

#include <memory>
#include <utility>

#include <orvane/OVEventSection.h>
#include <orvane/OVSignalSection.h>

namespace Host {

Column::Column(std::vector<Orvane::EventSection*>& events, std::size_t parameter) {
    Orvane::OVEventSection().GetVectorSignalSection(events, static_cast<int>(parameter), sections_);
}

Column Column::Like(const Column& shape) {
    Column column;
    column.owned_ = true;
    column.sections_.reserve(shape.sections_.size());
    for (const Orvane::SignalSection* section : shape.sections_) {
        auto own = std::make_unique<Orvane::SignalSection>();
        own->Initial();
        own->Count = section->Count;
        own->Index = section->Index;
        column.sections_.push_back(own.release());
    }
    return column;
}

Column::Column(Column&& other) noexcept
    : sections_(std::exchange(other.sections_, {})), owned_(other.owned_) {}

Column::~Column() {
    if (owned_) {
        Orvane::OVSignalSection().ReleaseVectorSection(sections_);
    } else {
        Orvane::OVSignalSection().ReleaseVectorSectionShare(sections_);
    }
}

}  // namespace Host
