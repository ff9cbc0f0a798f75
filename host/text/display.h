// Bytes from a file as text for people and for documents: UTF-8 where they are valid UTF-8, otherwise
// Latin-1.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Host {

/// Whether `bytes` are well-formed UTF-8.
bool IsUtf8(std::string_view bytes);

/// `bytes` as UTF-8: unchanged when they are valid UTF-8, otherwise read as Latin-1.
std::string ToUtf8(std::string_view bytes);

/// ToUtf8 with control characters written as \xNN, so that nothing in a file can steer a terminal.
std::string Printable(std::string_view bytes);

/// Printable, cut to a length that fits a message.
std::string Excerpt(std::string_view bytes);

/// The number of characters of UTF-8 text, as columns of a table.
std::size_t CharacterCount(std::string_view utf8);

}  // namespace Host
