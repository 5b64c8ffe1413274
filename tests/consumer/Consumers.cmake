# Every way in which a host comes by the library, each a test: hosts in tests/consumer are configured, built and run.

set(recording ${PROJECT_SOURCE_DIR}/examples/recordings/feeder_earth_fault.cfg)

# The compiler that did not build this library; a host may be built by it. Where there is none its tests are missing
# from the list, but a build with Clang has GCC beside it and insists.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    find_program(ORVCOMTRADE_OTHER_COMPILER clang++)
else()
    find_program(ORVCOMTRADE_OTHER_COMPILER g++ REQUIRED)
endif()
set(other_compiler ${CMAKE_CXX_COMPILER})
if(ORVCOMTRADE_OTHER_COMPILER)
    set(other_compiler ${ORVCOMTRADE_OTHER_COMPILER})
endif()

# orv_add_consumer_test(NAME [FOLDER folder] [LABEL label] [BUILD_TYPE type] [COMPILER path] option...)
function(orv_add_consumer_test name)
    cmake_parse_arguments(arg "" "FOLDER;LABEL;BUILD_TYPE;COMPILER" "" FOLDER consumer LABEL consumer BUILD_TYPE Release
                          COMPILER ${CMAKE_CXX_COMPILER} ${ARGN}) # of a keyword that comes again the last value counts
    add_test(
        NAME ${name}
        COMMAND
            ${CMAKE_CTEST_COMMAND} --build-and-test ${CMAKE_CURRENT_SOURCE_DIR}/${arg_FOLDER}
            ${CMAKE_CURRENT_BINARY_DIR}/${name} --build-generator ${CMAKE_GENERATOR} --build-project Consumer
            --build-options ${arg_UNPARSED_ARGUMENTS} -DCMAKE_CXX_COMPILER=${arg_COMPILER}
            -DCMAKE_BUILD_TYPE=${arg_BUILD_TYPE} -DCONSUMER_RECORDING=${recording}
            -DCONSUMER_EXPORTS_OF=${PROJECT_SOURCE_DIR} --test-command ${CMAKE_CTEST_COMMAND} --output-on-failure
            --no-tests=error)
    set_tests_properties(${name} PROPERTIES LABELS ${arg_LABEL})
endfunction()

# From the sources.
orv_add_consumer_test(Consumer.AddsTheLibraryAsSubProject -DORVCOMTRADE_SOURCE_DIR=${PROJECT_SOURCE_DIR}
                      -DCONSUMER_IN_ALL_DRESSES=ON)
# Some host programs compile several sources as one, and it takes a third of the time.
orv_add_consumer_test(Consumer.FetchesTheLibraryInADebugBuildOfCxx20 BUILD_TYPE Debug -DCMAKE_UNITY_BUILD=ON
                      -DORVCOMTRADE_SOURCE_DIR=${PROJECT_SOURCE_DIR} -DCONSUMER_FETCHES_THE_LIBRARY=ON
                      -DCMAKE_CXX_STANDARD=20 -DORVCOMTRADE_BUILD_INTAKE=ON -DCONSUMER_TAKES_THE_INTAKE=ON)
orv_add_consumer_test(Consumer.BringsItsOwnPlatformLibrary BUILD_TYPE Debug -DCMAKE_UNITY_BUILD=ON
                      -DORVCOMTRADE_SOURCE_DIR=${PROJECT_SOURCE_DIR} -DCONSUMER_HAS_PLATFORM_LIBRARY=ON)

# A bare compiler line: the two include folders are all that the sources need.
add_test(
    NAME Consumer.CompilesWithABareCompilerLine
    COMMAND
        sh -c
        "${CMAKE_CXX_COMPILER} -std=c++17 -fPIC -shared -I include -I platform/OrvCommon/include src/*/*.cpp platform/OrvCommon/src/*.cpp -o ${CMAKE_CURRENT_BINARY_DIR}/libbare.so && \
         ${CMAKE_CXX_COMPILER} -std=c++17 -I include -I platform/OrvCommon/include tests/consumer/main.cpp ${CMAKE_CURRENT_BINARY_DIR}/libbare.so -o ${CMAKE_CURRENT_BINARY_DIR}/bare && \
         ${CMAKE_CURRENT_BINARY_DIR}/bare ${recording}"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
set_tests_properties(Consumer.CompilesWithABareCompilerLine PROPERTIES LABELS consumer)

# A site's platform library as a package. The other compiler builds and installs it and the library.
set(site ${CMAKE_CURRENT_BINARY_DIR}/site)
add_test(NAME Consumer.InstallsWithASitesPlatformPackage
         COMMAND ${CMAKE_COMMAND} -D COMPILER=${other_compiler} -D GENERATOR=${CMAKE_GENERATOR} -D BUILD=${site}-build -D
                 PREFIX=${site}-prefix -P ${CMAKE_CURRENT_SOURCE_DIR}/consumer/install_with_site_platform.cmake)
orv_add_consumer_test(Consumer.FindsASitesPlatformPackage -DCMAKE_PREFIX_PATH=${site}-prefix
                      -DCONSUMER_EXPECTS_SITE_PLATFORM=ON)
set_tests_properties(Consumer.InstallsWithASitesPlatformPackage PROPERTIES FIXTURES_SETUP site LABELS consumer)
set_tests_properties(Consumer.FindsASitesPlatformPackage PROPERTIES FIXTURES_REQUIRED site)

# The installed tree, which must serve hosts wherever it is moved to.
set(stage ${CMAKE_CURRENT_BINARY_DIR}/stage)
add_test(NAME Install.Stages
         COMMAND sh -c "rm -rf ${stage} ${stage}-moved && ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --prefix ${stage} && \
                        mv ${stage} ${stage}-moved && ! grep -rl '${PROJECT_SOURCE_DIR}/' ${stage}-moved/include \
                        ${stage}-moved/${CMAKE_INSTALL_LIBDIR}/cmake ${stage}-moved/${CMAKE_INSTALL_LIBDIR}/pkgconfig")
orv_add_consumer_test(Install.PackageIsFound LABEL install -DCMAKE_PREFIX_PATH=${stage}-moved
                      -DCONSUMER_IN_ALL_DRESSES=ON -DCONSUMER_TAKES_THE_INTAKE=ON)
orv_add_consumer_test(Install.PackageIsFoundByADebugHost LABEL install BUILD_TYPE Debug
                      -DCMAKE_PREFIX_PATH=${stage}-moved)
orv_add_consumer_test(Install.PlatformPackageIsFoundByItsNameAlone FOLDER consumer/platform_host LABEL install
                      -DCMAKE_PREFIX_PATH=${stage}-moved)
add_test(NAME Install.PkgConfigWithABareCompilerLine
         COMMAND sh -c "${CMAKE_CXX_COMPILER} -std=c++17 -DCONSUMER_NAMES_THE_FOLDER consumer/main.cpp \
                        $(pkg-config --cflags --libs OrvComtradeLib) \
                        -Wl,-rpath,$(pkg-config --variable=libdir OrvComtradeLib) -o ${stage}-host && \
                        ${stage}-host ${recording}"
         WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
add_test(NAME Install.PkgConfigOfTheIntake
         COMMAND sh -c "${CMAKE_CXX_COMPILER} -std=c++17 consumer/intake.cpp $(pkg-config --cflags --libs OrvComtradeIntake) \
                        -Wl,-rpath,$(pkg-config --variable=libdir OrvComtradeIntake) -o ${stage}-intake-host && \
                        ${stage}-intake-host ${recording}"
         WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
set_tests_properties(
    Install.PkgConfigWithABareCompilerLine Install.PkgConfigOfTheIntake
    PROPERTIES ENVIRONMENT PKG_CONFIG_PATH=${stage}-moved/${CMAKE_INSTALL_LIBDIR}/pkgconfig LABELS install)
set(staged_hosts
    Install.PackageIsFound Install.PackageIsFoundByADebugHost Install.PlatformPackageIsFoundByItsNameAlone
    Install.PkgConfigWithABareCompilerLine Install.PkgConfigOfTheIntake)
if(ORVCOMTRADE_OTHER_COMPILER)
    orv_add_consumer_test(Install.PackageIsFoundByAnotherCompiler LABEL install COMPILER ${ORVCOMTRADE_OTHER_COMPILER}
                          -DCMAKE_PREFIX_PATH=${stage}-moved -DCONSUMER_IN_ALL_DRESSES=ON)
    list(APPEND staged_hosts Install.PackageIsFoundByAnotherCompiler)
endif()
set_tests_properties(Install.Stages PROPERTIES FIXTURES_SETUP staged LABELS install)
set_tests_properties(${staged_hosts} PROPERTIES FIXTURES_REQUIRED staged)
