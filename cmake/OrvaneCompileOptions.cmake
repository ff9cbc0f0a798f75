# Compile options shared by every target of the project.

# Warnings for our own code.
function(orvane_compile_options target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(ORVANE_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# The library's results are the same bits on every machine: no fused multiply-add behind the source's back. The
# other two options change no value and let plain loops vectorise. Without -fno-ipa-ra GCC may leave the upper
# halves of the vector registers dirty after a wide kernel, which slows down all later SSE code of the process.
function(orvane_exact_arithmetic target)
    target_compile_options(${target} PRIVATE -ffp-contract=off -fno-math-errno -fno-trapping-math)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -fno-ipa-ra)
    endif()
endfunction()

if(ORVANE_OPENMP)
    find_package(OpenMP REQUIRED COMPONENTS CXX)
endif()
