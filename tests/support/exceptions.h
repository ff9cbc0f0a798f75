// Catching what the library throws: a pointer to an exception object that the catcher deletes, or a bare
// text.
#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include <orvane/Exceptions.h>

namespace Orvane::Testing {

/// The message of what `operation` throws: an `Exception*`, or a bare text for `const char`.
template <class Exception, class Operation>
std::string MessageOf(Operation operation) {
    try {
        operation();
    } catch (Exception* error) {
        if constexpr (std::is_same_v<Exception, const char>)
            return error;
        else
            return std::unique_ptr<Exception>(error)->GetMessageException();
    }
    return "nothing thrown";
}

}  // namespace Orvane::Testing
