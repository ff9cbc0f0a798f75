#include "files/interruption.h"

namespace Host {
namespace {

volatile std::sig_atomic_t requested = 0;

void Note(int /*signal*/) {
    requested = 1;
}

}  // namespace

Interruption::Interruption() {
    requested = 0;
    before_ = std::signal(SIGINT, Note);
    if (before_ == SIG_IGN) std::signal(SIGINT, SIG_IGN);
}

Interruption::~Interruption() {
    std::signal(SIGINT, before_);
}

bool Interruption::Requested() const {
    return requested != 0;
}

}  // namespace Host
