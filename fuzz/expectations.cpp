#include <gtest/gtest.h>

#include "fuzz/target.h"

/// The targets share the tests' expectations; the first that is not met ends the process.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    GTEST_FLAG_SET(break_on_failure, true);
    return 0;
}
