# What a developer of this library builds beside it. A host that adds the library as a sub-project gets none of it.

include(CTest)

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

if(BUILD_TESTING)
    add_subdirectory(apps/orvcomtrade)
    add_subdirectory(examples)
    add_subdirectory(tests)
endif()
