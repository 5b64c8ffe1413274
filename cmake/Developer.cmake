# What a developer of this library builds beside it. With BUILD_TESTING=OFF nothing but the library is built, unless the
# host program is asked for, and nothing but a compiler is needed.

include(CTest)
option(ORVCOMTRADE_BUILD_PROGRAM "Build the host program (needs CLI11, fmt, nlohmann-json and uchardet)" ${BUILD_TESTING})

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
endif()
if(ORVCOMTRADE_BUILD_PROGRAM)
    add_subdirectory(apps/orvcomtrade)
endif()
if(BUILD_TESTING)
    add_subdirectory(bench)
    add_subdirectory(examples)
    add_subdirectory(fuzz)
    add_subdirectory(tests)
endif()
