# Installation, in components: library is the shared library; development is its headers, a CMake package and a
# pkg-config file; program is the host.
include(CMakePackageConfigHelpers)

set(ORVANE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Orvane)

install(TARGETS orvane EXPORT OrvaneTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
install(DIRECTORY include/orvane DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h")
install(EXPORT OrvaneTargets NAMESPACE Orvane:: DESTINATION ${ORVANE_CMAKE_DIR} COMPONENT development)

configure_package_config_file(cmake/OrvaneConfig.cmake.in OrvaneConfig.cmake
    INSTALL_DESTINATION ${ORVANE_CMAKE_DIR})
write_basic_package_version_file(OrvaneConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvaneConfig.cmake ${PROJECT_BINARY_DIR}/OrvaneConfigVersion.cmake
    DESTINATION ${ORVANE_CMAKE_DIR} COMPONENT development)

# Paths from the file itself, so that the installed tree may be moved and the library may lie deeper than lib/.
file(RELATIVE_PATH ORVANE_INCLUDE_FROM_PC
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/orvane.pc.in orvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvane.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

