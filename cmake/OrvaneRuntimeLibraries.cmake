# On Windows programs find libraries beside themselves, so everything goes into one folder, and with it the
# libraries of the compiler's own runtime. The library and its host share one runtime: what one side makes and the
# other deletes needs one heap, and what is thrown across the border one unwinder.
if(WIN32)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endif()

if(WIN32 AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(runtime_libraries libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    if(ORVANE_OPENMP)
        list(APPEND runtime_libraries libgomp-1.dll)
    endif()
    file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    foreach(library IN LISTS runtime_libraries)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
            OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        file(COPY_FILE ${file} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library} ONLY_IF_DIFFERENT)
    endforeach()
endif()
