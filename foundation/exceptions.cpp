#include <orvane/Exceptions.h>

#include "foundation/throw.h"

namespace Orvane {

CallLogicException::CallLogicException(char* message, char* file, int line)
    : message_(message), file_(file), line_(line) {}
char* CallLogicException::GetMessageException() const {
    return message_;
}
char* CallLogicException::GetFile() const {
    return file_;
}
int CallLogicException::GetLine() const {
    return line_;
}

OutOfMemoryException::OutOfMemoryException(char* message) : message_(message) {}
char* OutOfMemoryException::GetMessageException() const {
    return message_;
}

InvalidMemoryException::InvalidMemoryException(char* message) : message_(message) {}
char* InvalidMemoryException::GetMessageException() const {
    return message_;
}

RepeatFreeException::RepeatFreeException(char* message) : message_(message) {}
char* RepeatFreeException::GetMessageException() const {
    return message_;
}

InvalidParameterException::InvalidParameterException(char* message) : message_(message) {}
char* InvalidParameterException::GetMessageException() const {
    return message_;
}

// The exported constructors take `char*`, and nobody writes through it.
void ThrowOutOfMemory(const char* message) {
    throw new OutOfMemoryException(const_cast<char*>(message));
}
void ThrowInvalidMemory(const char* message) {
    throw new InvalidMemoryException(const_cast<char*>(message));
}
void ThrowRepeatFree(const char* message) {
    throw new RepeatFreeException(const_cast<char*>(message));
}
void ThrowInvalidParameter(const char* message) {
    throw new InvalidParameterException(const_cast<char*>(message));
}

}  // namespace Orvane
