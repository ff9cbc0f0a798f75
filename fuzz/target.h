// What every fuzz target defines.
#pragma once

#include <cstddef>
#include <cstdint>

/// Runs one input. Returns 0; a process that ends before has found something.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Runs once before the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
