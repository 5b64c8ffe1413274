# Installs a site's OrvCommon into PREFIX, then the library built against that package. BUILD is the folder to work in,
# COMPILER and GENERATOR what to build with.
cmake_policy(VERSION 3.25)

file(REMOVE_RECURSE ${BUILD} ${PREFIX})
function(install_project source name)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -G ${GENERATOR} -S ${source} -B ${BUILD}/${name} -D CMAKE_CXX_COMPILER=${COMPILER} -D
                CMAKE_BUILD_TYPE=Debug -D CMAKE_INSTALL_PREFIX=${PREFIX} -D CMAKE_PREFIX_PATH=${PREFIX} ${ARGN}
                COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD}/${name} --target install COMMAND_ERROR_IS_FATAL ANY)
endfunction()

install_project(${CMAKE_CURRENT_LIST_DIR}/site_platform site -D BUILD_SHARED_LIBS=ON)
install_project(${CMAKE_CURRENT_LIST_DIR}/../.. library -D BUILD_TESTING=OFF -D ORVCOMTRADE_BUNDLED_ORVCOMMON=OFF
                -D CMAKE_UNITY_BUILD=ON)

file(GLOB_RECURSE stand_in ${PREFIX}/*/libOrvCommon*)
if(stand_in)
    message(FATAL_ERROR "the stand-in was installed beside the site's platform library: ${stand_in}")
endif()
