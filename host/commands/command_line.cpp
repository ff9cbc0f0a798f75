#include "commands/command_line.h"

#include <string_view>

#include "text/display.h"

namespace Host {
namespace {

bool NeedsNoQuotes(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("@%_+=:,./-").find(c) != std::string_view::npos;
}

bool IsPlain(const std::string& argument) {
    for (const char c : argument) {
        if (!NeedsNoQuotes(c)) return false;
    }
    return !argument.empty();
}

std::string InQuotes(const std::string& argument) {
    std::string text = "'";
    for (const char c : argument) {
        if (c == '\'') {
            text += "'\\''";
        } else {
            text += c;
        }
    }
    return text + '\'';
}

std::string AsEscapes(const std::string& argument) {
    constexpr char Octal[] = "01234567";
    std::string text = "$'";
    for (const char c : argument) {
        const auto byte = static_cast<unsigned char>(c);
        if (NeedsNoQuotes(c)) {
            text += c;
        } else {
            text += {'\\', Octal[byte >> 6U], Octal[byte >> 3U & 7U], Octal[byte & 7U]};
        }
    }
    return text + '\'';
}

std::string Quote(const std::string& argument) {
    if (IsPlain(argument)) return argument;
    return Printable(argument) == argument ? InQuotes(argument) : AsEscapes(argument);
}

}  // namespace

std::string QuoteCommandLine(const std::vector<std::string>& arguments) {
    std::string text = "orvane";
    for (const std::string& argument : arguments)
        text += ' ' + Quote(argument);
    return text;
}

}  // namespace Host
