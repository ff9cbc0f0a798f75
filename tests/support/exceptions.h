// Catching what the library throws: a pointer to an exception object that the catcher deletes, or a bare
// text.
#pragma once

#include <memory>
#include <string>

#include <orvane/Exceptions.h>

namespace Orvane::Testing {

/// The message of the `Exception*` that `operation` throws.
template <class Exception, class Operation>
std::string MessageOf(Operation operation) {
    try {
        operation();
    } catch (Exception* error) {
        const std::unique_ptr<Exception> owner(error);
        return error->GetMessageException();
    }
    return "nothing thrown";
}

/// The bare text that `operation` throws.
template <class Operation>
std::string TextThrownBy(Operation operation) {
    try {
        operation();
    } catch (const char* text) {
        return text;
    }
    return "nothing thrown";
}

}  // namespace Orvane::Testing
