# What a developer of this library builds beside it. With BUILD_TESTING=OFF nothing but the library is built, unless the
# host program is asked for, and nothing but a compiler is needed.

include(CTest)
option(ORVCOMTRADE_BUILD_PROGRAM "Build the host program (needs CLI11, fmt, libzip, nlohmann-json and uchardet)" ${BUILD_TESTING})

# Warnings of the project's own code; errors by preset (CMAKE_COMPILE_WARNING_AS_ERROR).
add_library(orvcomtrade_warnings INTERFACE)
target_compile_options(
    orvcomtrade_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wsign-conversion
              -Wshadow
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wcast-qual
              -Wdouble-promotion
              -Wextra-semi
              -Wimplicit-fallthrough
              -Wundef)
target_link_libraries(OrvComtradeLib PRIVATE $<BUILD_INTERFACE:orvcomtrade_warnings>)
if(TARGET OrvCommon)
    target_link_libraries(OrvCommon PRIVATE $<BUILD_INTERFACE:orvcomtrade_warnings>)
endif()

if(ORVCOMTRADE_BUILD_INTAKE OR ORVCOMTRADE_BUILD_PROGRAM OR BUILD_TESTING)
    add_subdirectory(intake)
    target_link_libraries(OrvComtradeIntake PRIVATE $<BUILD_INTERFACE:orvcomtrade_warnings>)
    add_subdirectory(picture)
    target_link_libraries(OrvComtradePicture PRIVATE $<BUILD_INTERFACE:orvcomtrade_warnings>)
endif()
if(ORVCOMTRADE_BUILD_PROGRAM)
    add_subdirectory(page)
    target_link_libraries(OrvComtradePage PRIVATE $<BUILD_INTERFACE:orvcomtrade_warnings>)
    add_subdirectory(apps/orvcomtrade)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Debug") # optimised builds, whose speed is stated, compile it as host programs do
    orv_compile_together(OrvComtradeLib)
endif()
# The tests load files of hundreds of megabytes and recordings by the thousand, and spend most of their time in these two.
if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND BUILD_TESTING AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize|-fprofile")
    target_compile_options(OrvComtradeLib PRIVATE -Og)
    target_compile_options(OrvComtradeIntake PRIVATE -Og)
endif()
# Every sample goes through these loops, and there the assertions of the standard library would cost up to a tenth
# (docs/reliability.md). Builds without optimisation keep them.
function(orv_leave_out_assertions target)
    if(TARGET ${target} AND orv_is_hardened)
        foreach(source IN LISTS ARGN)
            if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${source})
                message(FATAL_ERROR "no source ${source}")
            endif()
            set_property(
                SOURCE ${PROJECT_SOURCE_DIR}/${source}
                TARGET_DIRECTORY ${target}
                APPEND
                PROPERTY COMPILE_OPTIONS "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_GLIBCXX_ASSERTIONS>")
        endforeach()
    endif()
endfunction()
orv_leave_out_assertions(OrvComtradeLib src/data/SampleDecoder.cpp)
orv_leave_out_assertions(
    OrvComtradeIntake intake/src/data/ColumnMaker.cpp intake/src/data/LineDecoder.cpp intake/src/data/FastLines.cpp
    intake/src/data/RecordDecoder.cpp intake/src/data/recordColumns.cpp)
orv_leave_out_assertions(orvcomtrade apps/orvcomtrade/commands/exportNpy.cpp
                         apps/orvcomtrade/commands/exportTable.cpp
                         apps/orvcomtrade/commands/exportText.cpp apps/orvcomtrade/output/Output.cpp)

if(BUILD_TESTING)
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=address") # nothing to measure, and preset fuzz has the same sanitizers
        add_subdirectory(bench)
        add_subdirectory(fuzz)
    endif()
    add_subdirectory(examples)
    add_subdirectory(tests)
endif()
