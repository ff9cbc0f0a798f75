// Which level of SSE instructions the processor offers.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// Instruction-set levels in ascending order.
enum OVInstructType {
    InstructUnknown = 0,  ///< not yet detected
    InstructNone = 1,     ///< none of the levels below
    InstructSSE = 2,
    InstructSSE2 = 3,
    InstructSSE3 = 4,
    InstructSSSE3 = 5,
    InstructSSE41 = 6,
    InstructSSE42 = 7
};

/// Detects the level once for the process. For the host's use: the library's own kernels choose for
/// themselves.
class ORVANE_API CPUSupportInstruct {
public:
    /// The highest level that the processor offers. Any thread may call it.
    static OVInstructType GetType();

private:
    static OVInstructType GetSSELevel();
    static OVInstructType GetAVXSupport();
    static void SetEnableAVX();
};

}  // namespace Orvane
