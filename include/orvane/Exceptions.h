// The exception types. The library throws a pointer to a new object; the catcher deletes it:
//
//     try { ... }
//     catch (Orvane::OutOfMemoryException* error) { report(error->GetMessageException()); delete error; }
//
// Message pointers point at constant texts that the exception objects never own. OVMatrix and QuickFindIndex
// throw the bare text (`const char*`) instead.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// For the host's use; the library does not throw it.
class ORVANE_API CallLogicException {
public:
    /// Keeps the pointers, not copies of the texts.
    CallLogicException(char* message, char* file, int line);
    /// What the constructor was given.
    char* GetMessageException() const;
    char* GetFile() const;
    int GetLine() const;

private:
    char* message_;
    char* file_;
    int line_;
};

/// The pool cannot get memory: "Out of memory!" when the allocator has none and no handler helps,
/// "Out of memory." when a second attempt found none either.
class ORVANE_API OutOfMemoryException {
public:
    /// Keeps the pointer, not a copy of the text, and gives it back.
    explicit OutOfMemoryException(char* message);
    char* GetMessageException() const;

private:
    char* message_;
};

/// An address that the pool never gave out, or a copy or removal that does not fit its section.
class ORVANE_API InvalidMemoryException {
public:
    /// Keeps the pointer, not a copy of the text, and gives it back.
    explicit InvalidMemoryException(char* message);
    char* GetMessageException() const;

private:
    char* message_;
};

/// Storage was returned to the pool that is not in use.
class ORVANE_API RepeatFreeException {
public:
    /// Keeps the pointer, not a copy of the text, and gives it back.
    explicit RepeatFreeException(char* message);
    char* GetMessageException() const;

private:
    char* message_;
};

/// A section was passed as an element of a vector that does not contain it.
class ORVANE_API InvalidParameterException {
public:
    /// Keeps the pointer, not a copy of the text, and gives it back.
    explicit InvalidParameterException(char* message);
    char* GetMessageException() const;

private:
    char* message_;
};

}  // namespace Orvane
