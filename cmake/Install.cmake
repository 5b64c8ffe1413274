# What `cmake --install` lays down: component Runtime (the shared libraries), Development (headers, CMake and pkg-config
# packages, documents) and Program (the host program, its manual page, its completion). Nothing of the build machine
# goes into the files, and an installed tree may be moved as a whole.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ORVCOMTRADE_ZSH_COMPLETION_DIR
    ${CMAKE_INSTALL_DATAROOTDIR}/zsh/site-functions
    CACHE STRING "Where the completion for zsh goes (Debian: share/zsh/vendor-completions)")

# The build tree has the layout of the installed one, so that each file carries its final RUNPATH from the start. If CMake
# replaced it at installation it would pad the one before with a ':', and an empty element is the current folder: whoever
# puts a library there has it run.
set(orv_build_tree ${PROJECT_BINARY_DIR})
get_property(is_multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(is_multi_config)
    string(APPEND orv_build_tree /$<CONFIG>)
endif()

# orv_set_runpath(TARGET FOLDER): where an installed file looks for libraries, and beside them in those folders outside
# the project that it was linked with (such as a site's platform library).
function(orv_set_runpath target folder)
    set_target_properties(
        ${target}
        PROPERTIES INSTALL_RPATH "${folder}"
                   INSTALL_RPATH_USE_LINK_PATH ON
                   BUILD_WITH_INSTALL_RPATH ON
                   LIBRARY_OUTPUT_DIRECTORY ${orv_build_tree}/${CMAKE_INSTALL_LIBDIR}
                   RUNTIME_OUTPUT_DIRECTORY ${orv_build_tree}/${CMAKE_INSTALL_BINDIR})
endfunction()

# orv_install_package(TARGET HEADERS): the library, its headers in that folder (which is the include directory), a CMake
# package and a pkg-config file from cmake/TARGETConfig.cmake.in and cmake/TARGET.pc.in beside the caller.
function(orv_install_package target headers)
    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${target})
    orv_set_runpath(${target} "\$ORIGIN")
    install(
        TARGETS ${target}
        EXPORT ${target}Targets
        LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE COMPONENT Development
        FILE_SET HEADERS
        DESTINATION ${headers}
        COMPONENT Development)
    install(
        EXPORT ${target}Targets
        NAMESPACE Orv::
        DESTINATION ${package_dir}
        COMPONENT Development)
    configure_package_config_file(cmake/${target}Config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/${target}Config.cmake
                                  INSTALL_DESTINATION ${package_dir})
    write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/${target}ConfigVersion.cmake
                                     COMPATIBILITY SameMajorVersion)
    install(
        FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}Config.cmake ${CMAKE_CURRENT_BINARY_DIR}/${target}ConfigVersion.cmake
        DESTINATION ${package_dir}
        COMPONENT Development)
    file(RELATIVE_PATH include_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
    configure_file(cmake/${target}.pc.in ${target}.pc @ONLY)
    install(
        FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT Development)
endfunction()

# orv_install_program(TARGET): the program, and from the caller's folder TARGET.1 (with the version put in) and the
# completion for bash, zsh and fish.
function(orv_install_program target)
    file(RELATIVE_PATH lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    orv_set_runpath(${target} "\$ORIGIN/${lib_from_bin}")
    install(TARGETS ${target} RUNTIME COMPONENT Program)
    configure_file(${target}.1 ${target}.1 @ONLY)
    install(
        FILES ${CMAKE_CURRENT_BINARY_DIR}/${target}.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT Program)
    install(
        FILES completion/${target}.bash
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
        RENAME ${target}
        COMPONENT Program)
    install(
        FILES completion/_${target}
        DESTINATION ${ORVCOMTRADE_ZSH_COMPLETION_DIR}
        COMPONENT Program)
    install(
        FILES completion/${target}.fish
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d
        COMPONENT Program)
endfunction()

# orv_install_documents(): what there is to read, in the folders of the source tree, so that the links hold.
function(orv_install_documents)
    install(
        FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT Development)
    install(
        FILES platform/OrvCommon/README.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR}/platform/OrvCommon
        COMPONENT Development)
    install(
        DIRECTORY docs examples
        DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT Development
        FILES_MATCHING
        PATTERN "site" EXCLUDE
        PATTERN "*.md"
        PATTERN "*.svg"
        PATTERN "*.png"
        PATTERN "*.h"
        PATTERN "*.cpp"
        PATTERN "*.cfg"
        PATTERN "*.dat")
endfunction()
