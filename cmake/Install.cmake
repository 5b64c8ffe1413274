# What `cmake --install` lays down: component Runtime (the shared library) and Development (headers, packages). Nothing
# of the build machine goes into the files, and an installed tree may be moved as a whole.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# orv_install_package(TARGET): the library, its headers in a folder of their own name (which is the include directory),
# a CMake package and a pkg-config file from cmake/TARGETConfig.cmake.in and cmake/TARGET.pc.in beside the caller.
function(orv_install_package target)
    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${target})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "\$ORIGIN")
    install(
        TARGETS ${target}
        EXPORT ${target}Targets
        LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
        FILE_SET HEADERS
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${target}
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
