# What makes a fault that is still there hard to exploit: bounds of the C library's and the standard library's calls
# checked at run time, guarded stacks, guarded jumps, tables of addresses that are read-only once the program runs. None
# of it changes a result. docs/reliability.md says what it costs; the test Checks.binaries looks at what is built.

option(ORVCOMTRADE_HARDENING "Build with the checks of compiler and linker that stop exploits" ON)
set(orv_is_hardened OFF)
if(NOT ORVCOMTRADE_HARDENING OR CMAKE_CXX_FLAGS MATCHES "-fsanitize") # sanitizers look closer themselves
    return()
endif()
set(orv_is_hardened ON)

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "ORVCOMTRADE_HAS${flag}" has)
    check_cxx_compiler_flag(${flag} ${has}) # the last one is of x86 alone
    if(${has})
        add_compile_options(${flag})
    endif()
endforeach()

# The C library's checked calls: none without optimisation.
set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
check_cxx_source_compiles("#include <cstdio>\nstatic_assert(__USE_FORTIFY_LEVEL == 3, \"\");\nint main() {}"
                          ORVCOMTRADE_HAS_FORTIFY_3)
unset(CMAKE_REQUIRED_FLAGS)
set(level 2)
if(ORVCOMTRADE_HAS_FORTIFY_3)
    set(level 3)
endif()
set(flags -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level})
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    list(APPEND flags -Wno-restrict) # then sees overlapping copies in "literal" + std::string (its bug 105651)
endif()
add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:${flags}>")
add_compile_definitions(_GLIBCXX_ASSERTIONS)

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
