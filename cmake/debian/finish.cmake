# Turns the installed components into what a Debian package holds: dependencies, shlibs, copyright, changelogs, what is
# linked (SPDX), compressed manual pages; no RUNPATH, since the libraries lie where the system looks. CPack could work out the first two, but would then call ldconfig from maintainer scripts,
# where Debian wants a trigger and no script.
cmake_policy(VERSION 3.25)

set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(scratch ${CPACK_TOPLEVEL_DIRECTORY}/finish)
set(library_package ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME})

function(compress file)
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD ${file}.gz PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

function(lay_down file folder name)
    file(MAKE_DIRECTORY ${folder})
    file(COPY_FILE ${CPACK_ORVCOMTRADE_DEBIAN_FILES}/${file} ${folder}/${name})
    file(CHMOD ${folder}/${name} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

function(elf_files out folder)
    file(GLOB_RECURSE files LIST_DIRECTORIES false ${folder}/usr/bin/* ${folder}/usr/lib/*.so.*)
    set(elf)
    foreach(file IN LISTS files)
        if(NOT IS_SYMLINK ${file})
            list(APPEND elf ${file})
        endif()
    endforeach()
    set(${out} ${elf} PARENT_SCOPE)
endfunction()

# The date of the changelog entry is that of all files: the moment given, else that of the changelog.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    file(TIMESTAMP ${CPACK_ORVCOMTRADE_CHANGELOG} moment %s UTC)
    set(ENV{SOURCE_DATE_EPOCH} ${moment})
endif()
set(ENV{LC_ALL} C.UTF-8)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

file(REMOVE_RECURSE ${scratch})
file(WRITE ${scratch}/debian/control "") # dpkg-shlibdeps wants one

# How the paths of the objects that go into a component begin.
set(objects_of_Runtime CMakeFiles/OrvComtradeLib.dir/ platform/)
set(objects_of_Development intake/)
set(objects_of_Program apps/ intake/ picture/)

# Every library is asked for in the version that it was linked with, or later.
elf_files(libraries ${CPACK_TEMPORARY_DIRECTORY}/Runtime)
set(shlibs)
set(library_folders)
set(own_libraries)
foreach(library IN LISTS libraries)
    get_filename_component(file_name ${library} NAME)
    if(NOT file_name MATCHES "^(.+)\\.so\\.([0-9]+)\\.")
        message(FATAL_ERROR "${file_name}: no version in the name of a shared library")
    endif()
    string(APPEND shlibs "${CMAKE_MATCH_1} ${CMAKE_MATCH_2} ${library_package} (>= ${CPACK_PACKAGE_VERSION})\n")
    list(APPEND own_libraries ${CMAKE_MATCH_1}.so.${CMAKE_MATCH_2}=${library_package})
    get_filename_component(folder ${library} DIRECTORY)
    list(APPEND library_folders -l${folder})
endforeach()
list(REMOVE_DUPLICATES library_folders)
file(WRITE ${scratch}/shlibs "${shlibs}")
list(APPEND CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${scratch}/shlibs)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} key)
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})
    set(package ${CPACK_DEBIAN_${key}_PACKAGE_NAME})

    elf_files(binaries ${root})
    foreach(binary IN LISTS binaries)
        file(RPATH_REMOVE FILE ${binary})
    endforeach()
    set(depends)
    if(binaries)
        file(MAKE_DIRECTORY ${root}/DEBIAN) # marks the package's folder for dpkg-shlibdeps
        execute_process(
            COMMAND dpkg-shlibdeps -O -L${scratch}/shlibs ${library_folders} -x${package} ${binaries}
            WORKING_DIRECTORY ${scratch}
            OUTPUT_VARIABLE depends
            OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        file(REMOVE_RECURSE ${root}/DEBIAN)
        string(REPLACE "shlibs:Depends=" "" depends "${depends}")
    endif()
    if(component STREQUAL "Development")
        set(depends "${library_package} (= ${version}), libuchardet-dev") # the intake is a static library
    endif()
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}")

    set(documents ${root}/usr/share/doc/${package})
    lay_down(copyright ${documents} copyright)
    execute_process(
        COMMAND
            python3 ${CPACK_ORVCOMTRADE_DEBIAN_FILES}/spdx.py --name ${package} --version ${version} --build
            ${CPACK_ORVCOMTRADE_BUILD} --output ${documents}/${package}.spdx.json --objects ${objects_of_${component}}
            --own ${own_libraries} -- ${binaries}
            COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD ${documents}/${package}.spdx.json PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    if(EXISTS ${CPACK_ORVCOMTRADE_DEBIAN_FILES}/${package}.lintian-overrides)
        lay_down(${package}.lintian-overrides ${root}/usr/share/lintian/overrides ${package})
    endif()
    file(
        WRITE ${documents}/changelog.Debian
        "${CPACK_DEBIAN_PACKAGE_SOURCE} (${version}) unstable; urgency=medium\n\n"
        "  * Release ${CPACK_PACKAGE_VERSION}; what is new stands in changelog.gz.\n\n"
        " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    compress(${documents}/changelog.Debian)
    file(COPY_FILE ${CPACK_ORVCOMTRADE_CHANGELOG} ${documents}/changelog)
    compress(${documents}/changelog)
    file(GLOB pages ${root}/usr/share/man/man*/*[0-9])
    foreach(page IN LISTS pages)
        compress(${page})
    endforeach()
endforeach()
