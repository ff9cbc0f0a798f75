// One value per event, cut into the library's sections: a view of a parameter, or values of its own.
#pragma once

#include <vector>

#include <orvane/Sections.h>

namespace Host {

/// Returns its storage, if it has any, to the pool at the end.
class Column {
public:
    /// A view of one parameter of `events`.
    Column(std::vector<Orvane::EventSection*>& events, std::size_t parameter);
    /// As many values as `shape`, not set yet.
    static Column Like(const Column& shape);

    Column(Column&& other) noexcept;
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;
    Column& operator=(Column&&) = delete;
    ~Column();

    std::vector<Orvane::SignalSection*>& Sections() { return sections_; }
    const std::vector<Orvane::SignalSection*>& Sections() const { return sections_; }

private:
    Column() = default;

    std::vector<Orvane::SignalSection*> sections_;
    bool owned_ = false;
};

}  // namespace Host
