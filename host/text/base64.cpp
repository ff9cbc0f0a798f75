#include "text/base64.h"

#include <cstdint>

namespace Host {

std::string ToBase64(std::string_view bytes) {
    constexpr char Letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (; !bytes.empty(); bytes.remove_prefix(bytes.size() < 3 ? bytes.size() : 3)) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= bytes.size() ? Letters[group >> (18 - 6 * i) & 0x3FU] : '=';
    }
    return text;
}

}  // namespace Host
