// Bytes as text of 64 letters (RFC 4648, section 4).
#pragma once

#include <string>
#include <string_view>

namespace Host {

std::string ToBase64(std::string_view bytes);

}  // namespace Host
