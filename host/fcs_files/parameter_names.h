// Parameters by name. Texts in files are bytes; people and documents write UTF-8.
#pragma once

#include <optional>
#include <string>

#include "fcs_files/fcs_parameters.h"

namespace Host {

/// The position of the first parameter with that $PnN, in whatever bytes.
std::optional<std::size_t> FindParameter(const EventLayout& layout, const std::string& name);

/// All $PnN, separated by commas, for messages.
std::string ListNames(const EventLayout& layout);

}  // namespace Host
