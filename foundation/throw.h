// How the library throws: a pointer to a new exception object with a constant message, which the catcher
// deletes.
#pragma once

namespace Orvane {

[[noreturn]] void ThrowOutOfMemory(const char* message);
[[noreturn]] void ThrowInvalidMemory(const char* message);
[[noreturn]] void ThrowRepeatFree(const char* message);
[[noreturn]] void ThrowInvalidParameter(const char* message);

}  // namespace Orvane
