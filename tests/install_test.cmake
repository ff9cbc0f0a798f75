# Builds and runs the program in examples/minimal_host with the library, in one of the ways that a host may
# take, and compares what it prints with what it must print.
#
# WAY: find_package or pkg_config (both with the build in BUILD installed below SCRATCH), or add_subdirectory
# (with the source in SOURCE, in place of find_package).
cmake_minimum_required(VERSION 3.25)

set(example ${SOURCE}/examples/minimal_host)
set(prefix ${SCRATCH}/prefix)
file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

function(install_library)
    run(${CMAKE_COMMAND} --install ${BUILD} --config ${BUILD_TYPE} --prefix ${prefix})
endfunction()

function(build_with_cmake source)
    run(${CMAKE_COMMAND} -S ${source} -B ${SCRATCH}/build -G ${GENERATOR} -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
        -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER} -DCMAKE_CXX_FLAGS=${CXX_FLAGS}
        -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${SCRATCH} ${ARGN})
    run(${CMAKE_COMMAND} --build ${SCRATCH}/build --config ${BUILD_TYPE})
endfunction()

if(WAY STREQUAL "find_package")
    install_library()
    build_with_cmake(${example} -DCMAKE_PREFIX_PATH=${prefix})
elseif(WAY STREQUAL "pkg_config")
    install_library()
    file(GLOB_RECURSE descriptions ${prefix}/orvane.pc)
    cmake_path(GET descriptions PARENT_PATH pkg_config_path)
    set(ENV{PKG_CONFIG_PATH} ${pkg_config_path})
    execute_process(COMMAND pkg-config --cflags --libs orvane OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND pkg-config --variable=libdir orvane OUTPUT_VARIABLE library_path
        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS} ${flags}")
    run(${CXX} -std=c++17 ${example}/main.cpp -o ${SCRATCH}/minimal_host ${flags} -Wl,-rpath,${library_path})
else()
    file(WRITE ${SCRATCH}/CMakeLists.txt "
        cmake_minimum_required(VERSION 3.25)
        project(Stranger LANGUAGES CXX)
        include(FetchContent)
        FetchContent_Declare(Orvane SOURCE_DIR \"${SOURCE}\" OVERRIDE_FIND_PACKAGE)
        add_subdirectory(\"${example}\" example)")
    build_with_cmake(${SCRATCH})
endif()

execute_process(COMMAND ${SCRATCH}/minimal_host OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
file(READ ${example}/expected_output.txt expected)
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "Expected:\n${expected}\nPrinted:\n${printed}")
endif()
