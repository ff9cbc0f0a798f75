// Recounts the pool from scratch. Debug builds assert it whenever the pool was set up or shrunk; tests ask
// after every step.
#pragma once

#include <cstdint>
#include <string>

#include <orvane/MemoryPackets.h>

namespace Orvane {

/// What is wrong with the pool's records, lists or address index; empty when everything agrees.
std::string FindPoolFault();

/// The bytes handed out, counted from the masks. The pool's own counter differs from it by the segments that
/// ReleaseToInit gave back and by what it forgot in those it kept.
std::int64_t CountBytesHandedOut();

/// Whether a block of the segment holds a packet: the difference between a segment in pieces and a whole one.
bool IsCutIntoPackets(const MemorySegment& segment);

}  // namespace Orvane
