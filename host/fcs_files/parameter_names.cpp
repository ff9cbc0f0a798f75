#include "fcs_files/parameter_names.h"

#include <algorithm>

#include "text/display.h"

namespace Host {

std::optional<std::size_t> FindParameter(const EventLayout& layout, const std::string& name) {
    const std::string wanted = ToUtf8(name);
    const auto begin = layout.parameters.begin();
    const auto end = layout.parameters.end();
    const auto place = std::find_if(
        begin, end, [&](const Parameter& parameter) { return ToUtf8(parameter.name) == wanted; });
    if (place == end) return std::nullopt;
    return static_cast<std::size_t>(place - begin);
}

std::string ListNames(const EventLayout& layout) {
    std::string names;
    for (const Parameter& parameter : layout.parameters) {
        names += (names.empty() ? "" : ", ") + Excerpt(parameter.name);
    }
    return names;
}

}  // namespace Host
