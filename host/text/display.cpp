#include "text/display.h"

#include <algorithm>
#include <cstdint>

namespace Host {
namespace {

constexpr std::size_t ExcerptLength = 60;

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// Length of the well-formed UTF-8 sequence at the start of `bytes` (not empty); 0 when there is none.
std::size_t SequenceLength(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return 0;
    if (!std::all_of(bytes.begin() + 1, bytes.begin() + static_cast<std::ptrdiff_t>(length),
                     IsContinuation)) {
        return 0;
    }
    const auto second = static_cast<unsigned char>(bytes[1]);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool surrogate = lead == 0xED && second > 0x9F;
    const bool beyond = lead == 0xF4 && second > 0x8F;
    return overlong || surrogate || beyond ? 0 : length;
}

void AppendLatin1(std::string& text, char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
        text += c;
        return;
    }
    text += static_cast<char>(0xC0U | (byte >> 6U));
    text += static_cast<char>(0x80U | (byte & 0x3FU));
}

/// The control character at the start of `utf8`, or -1: those below blank, delete, and U+0080 to U+009F.
int ControlCharacter(std::string_view utf8) {
    const auto first = static_cast<unsigned char>(utf8[0]);
    if (first < 0x20 || first == 0x7F) return first;
    if (first != 0xC2 || utf8.size() < 2) return -1;
    const auto second = static_cast<unsigned char>(utf8[1]);
    return second < 0xA0 ? second : -1;
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = SequenceLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string ToUtf8(std::string_view bytes) {
    if (IsUtf8(bytes)) return std::string(bytes);
    std::string text;
    for (const char c : bytes)
        AppendLatin1(text, c);
    return text;
}

std::string Printable(std::string_view bytes) {
    constexpr char Hex[] = "0123456789abcdef";
    const std::string utf8 = ToUtf8(bytes);
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const int control = ControlCharacter(std::string_view(utf8).substr(i));
        if (control < 0) {
            text += utf8[i];
            continue;
        }
        text += {'\\', 'x', Hex[control / 16], Hex[control % 16]};
        if (control >= 0x80) ++i;
    }
    return text;
}

std::string Excerpt(std::string_view bytes) {
    // Enough for one character too many, without cutting one in two.
    std::size_t length = std::min(bytes.size(), 4 * ExcerptLength + 7);
    for (int i = 0; i < 3 && length < bytes.size() && IsContinuation(bytes[length]); ++i)
        --length;
    std::string text = Printable(bytes.substr(0, length));
    if (CharacterCount(text) <= ExcerptLength) return text;
    std::size_t end = 0;
    for (std::size_t characters = 0; characters < ExcerptLength; ++characters) {
        do {
            ++end;
        } while (end < text.size() && IsContinuation(text[end]));
    }
    return text.substr(0, end) + "...";
}

std::size_t CharacterCount(std::string_view utf8) {
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return !IsContinuation(c); }));
}

}  // namespace Host
