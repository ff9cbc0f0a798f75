# Debian packages, one for each component of the installation: liborvane1, liborvane-dev and orvane.
set(revision 1)
set(package_of_library liborvane${PROJECT_VERSION_MAJOR})
set(package_of_development liborvane-dev)
set(package_of_program orvane)

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development program)
set(CPACK_PACKAGE_NAME orvane)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # would precede the summary that each package has
set(CPACK_PACKAGE_CONTACT "The Orvane authors <authors@orvane.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${revision})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What the files need, by the symbols they use, and what those need that link the library. Its own package is not known
# to the system that builds it: the other two name it, in exactly their version.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_PROGRAM_DEPENDS library)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${package_of_library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Numeric library for flow cytometry
Holds the events of samples in pooled columns, reads and writes the DATA of
FCS files, compensates spill-over, decides gate membership, computes statistics
and counts the events of plots.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${package_of_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Numeric library for flow cytometry - development files
The headers of liborvane, with what CMake and pkg-config need to find it.")

# The labels of pictures are set in DejaVu Sans.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ${package_of_program})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS fonts-dejavu-core)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "Flow cytometry list-mode files: what they hold, in numbers and pictures
Prints statistics and populations of FCS files, converts them, draws plots and
writes reports; acquires events from a simulated instrument.")

# What every package says about itself: its licence, what changed, and what changed in packaging.
file(READ ${PROJECT_SOURCE_DIR}/CHANGELOG.md changes)
if(NOT changes MATCHES "## \\[${PROJECT_VERSION}\\] - ([0-9-]+)")
    message(FATAL_ERROR "CHANGELOG.md has no entry for version ${PROJECT_VERSION}")
endif()
execute_process(COMMAND date --utc --rfc-email --date=${CMAKE_MATCH_1} OUTPUT_VARIABLE release_date
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(documents ${PROJECT_BINARY_DIR}/documents)
file(WRITE ${documents}/changelog.Debian "orvane (${PROJECT_VERSION}-${revision}) unstable; urgency=medium

  * Version ${PROJECT_VERSION}; changelog.gz says what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${release_date}
")
configure_file(CHANGELOG.md ${documents}/changelog COPYONLY)
execute_process(COMMAND gzip -9nf ${documents}/changelog ${documents}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    set(directory ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package_of_${component}})
    install(FILES ${documents}/changelog.gz ${documents}/changelog.Debian.gz
        DESTINATION ${directory} COMPONENT ${component})
    install(FILES LICENSE DESTINATION ${directory} COMPONENT ${component} RENAME copyright)
endforeach()

include(CPack)
