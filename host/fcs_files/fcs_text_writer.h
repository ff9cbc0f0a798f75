// TEXT to be written: UTF-8, with a delimiter that the keywords and values leave alone as far as possible.
#pragma once

#include <string>
#include <vector>

#include "fcs_files/fcs_text.h"

namespace Host {

/// The segment with these pairs, in their order. A delimiter inside a value is doubled; an empty value, or
/// one that begins with the delimiter, gets a blank in front, as there is no other way to write it.
std::string FormatText(const std::vector<Keyword>& pairs);

}  // namespace Host
