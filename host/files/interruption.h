// Ctrl-C as a wish to finish instead of the end of the program.
#pragma once

#include <csignal>

namespace Host {

/// One at a time. While it lives, an interrupt only sets a flag, unless the program was told to ignore
/// interrupts.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    bool Requested() const;

private:
    void (*before_)(int);
};

}  // namespace Host
