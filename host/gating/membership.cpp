#include "gating/membership.h"

#include <utility>

#include <orvane/OVFilter.h>
#include <orvane/OVFilterSection.h>

namespace Host {

Membership::Membership(std::vector<Orvane::EventSection*>& events) {
    Orvane::OVFilterSection operations;
    try {
        operations.SynchronousVectorSection(sections_, events);
    } catch (...) {
        operations.ReleaseVectorSection(sections_);
        throw;
    }
}

Membership::Membership(std::vector<Orvane::SignalSection*>& values, float min, float max) {
    try {
        Orvane::OVFilter().Filter_LineSegment(values, sections_, min, max);
    } catch (...) {
        Orvane::OVFilterSection().ReleaseVectorSection(sections_);
        throw;
    }
}

Membership::Membership(Membership&& other) noexcept : sections_(std::exchange(other.sections_, {})) {}

Membership::~Membership() {
    Orvane::OVFilterSection().ReleaseVectorSection(sections_);
}

void Membership::And(Membership& other, bool complement) {
    Orvane::OVFilterSection operations;
    if (complement) {
        operations.Composite_Comp_And_NotReal(sections_, other.sections_);
    } else {
        operations.And(sections_, other.sections_);
    }
}

void Membership::And(std::vector<Orvane::FilterSection*>& other) {
    Orvane::OVFilterSection().And(sections_, other);
}

void Membership::Or(Membership& other, bool complement) {
    Orvane::OVFilterSection operations;
    if (complement) {
        operations.Composite_Comp_Or_NotReal(sections_, other.sections_);
    } else {
        operations.Or(sections_, other.sections_);
    }
}

void Membership::SetAll() {
    Orvane::OVFilterSection().SetAllTrue(sections_);
}

std::uint64_t Membership::Recount() {
    std::uint64_t count = 0;
    for (Orvane::FilterSection* section : sections_) {
        section->CalcTrueCount();
        count += static_cast<std::uint64_t>(section->TrueCount);
    }
    return count;
}

}  // namespace Host
