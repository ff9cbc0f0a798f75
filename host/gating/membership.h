// Which events belong to a population: one bit for each, cut into sections as the events are.
#pragma once

#include <cstdint>
#include <vector>

#include <orvane/Sections.h>

namespace Host {

/// Returns its storage to the pool at the end.
class Membership {
public:
    /// As many events as `events`, none of them inside.
    explicit Membership(std::vector<Orvane::EventSection*>& events);
    /// The events whose value lies from `min` to `max`, both included; they are not counted yet.
    Membership(std::vector<Orvane::SignalSection*>& values, float min, float max);
    Membership(Membership&& other) noexcept;
    Membership(const Membership&) = delete;
    Membership& operator=(const Membership&) = delete;
    Membership& operator=(Membership&&) = delete;
    ~Membership();

    std::vector<Orvane::FilterSection*>& Sections() { return sections_; }

    /// Keeps the events that `other` has, too, or with `complement` has not.
    void And(Membership& other, bool complement = false);
    void And(std::vector<Orvane::FilterSection*>& other);
    /// Adds the events that `other` has, or with `complement` has not.
    void Or(Membership& other, bool complement);
    void SetAll();

    /// Counts the events inside; the sections know their counts then.
    std::uint64_t Recount();

private:
    std::vector<Orvane::FilterSection*> sections_;
};

}  // namespace Host
