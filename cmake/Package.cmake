# What `cpack` makes of the components: the Debian packages liborvcomtrade1, liborvcomtrade-dev and orvcomtrade.
# scripts/package makes and tests them. cmake/debian holds what Debian wants beside the installed files.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "OrvComtradeLib developers <orvcomtrade@example.invalid>")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ
    OWNER_WRITE
    OWNER_EXECUTE
    GROUP_READ
    GROUP_EXECUTE
    WORLD_READ
    WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL Runtime Development)
if(ORVCOMTRADE_BUILD_PROGRAM)
    list(APPEND CPACK_COMPONENTS_ALL Program)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 0.1) # sorts before a distribution's own first package of the version
set(CPACK_DEBIAN_PACKAGE_SOURCE orvcomtradelib)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# The summary is a line of each description here; CPack would put one and the same in front of all.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liborvcomtrade1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "reader of COMTRADE disturbance recordings (shared library)
This library reads recordings of power-system disturbances (COMTRADE,
IEEE C37.111) and hands a plotting program what it needs: names, values in
seconds and base units, points.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvcomtrade-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "reader of COMTRADE disturbance recordings (development files)
This library reads recordings of power-system disturbances (COMTRADE,
IEEE C37.111).
.
The package holds the headers, the CMake and pkg-config packages, the
intake (a static library that repairs what devices write), the documents
and the examples.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME orvcomtrade)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION
    "show, check and convert COMTRADE disturbance recordings
The program shows what recordings of power-system disturbances (COMTRADE,
IEEE C37.111) hold and what is wrong with them, exports their samples and
status changes, and writes clean copies. It reads what devices really write.")

# Runs between the installation of the components and their packing.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/finish.cmake)
set(CPACK_ORVCOMTRADE_DEBIAN_FILES ${PROJECT_SOURCE_DIR}/cmake/debian)
set(CPACK_ORVCOMTRADE_BUILD ${PROJECT_BINARY_DIR})
set(CPACK_ORVCOMTRADE_CHANGELOG ${PROJECT_SOURCE_DIR}/CHANGELOG.md)

include(CPack)
