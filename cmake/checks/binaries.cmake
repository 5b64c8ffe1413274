# Every program and shared library that is built: where it looks for libraries, and that the flags of
# cmake/hardening.cmake arrived. An empty or relative folder of a RUNPATH is one below the current folder: whoever puts a
# library there has it run. FILES are the files, or LIST is a file with one of them on each line; HARDENED says whether
# they are to be hardened.
cmake_policy(VERSION 3.25)
find_program(READELF readelf REQUIRED)
if(DEFINED LIST)
    file(STRINGS ${LIST} FILES)
endif()

function(complain sentence)
    message(SEND_ERROR "${file}: ${sentence}")
endfunction()

function(check_runpath elf)
    string(REGEX MATCHALL "\\((RUNPATH|RPATH)\\)[^\n]*" entries "${elf}")
    foreach(entry IN LISTS entries)
        string(REGEX REPLACE "^[^{]*{(.*)}$" "\\1:" folders "${entry}")
        while(folders MATCHES "^([^:]*):(.*)$")
            set(folder "${CMAKE_MATCH_1}")
            set(folders "${CMAKE_MATCH_2}")
            if(NOT folder MATCHES "^(/|\\$ORIGIN(/|$))")
                complain("looks for libraries in \"${folder}\" of the current folder")
            endif()
        endwhile()
    endforeach()
endfunction()

# require_in(ELF COMPLAINT REGEX): what must stand in the output of readelf.
function(require_in elf what regex)
    if(NOT elf MATCHES "${regex}")
        complain("${what}")
    endif()
endfunction()

function(check_hardening elf)
    require_in("${elf}" "not position-independent" "Type: +DYN")
    require_in("${elf}" "no part becomes read-only after relocation" "\n +GNU_RELRO ")
    require_in("${elf}" "addresses are not bound at the start" "\\((BIND_NOW|FLAGS_1)\\)[^\n]*NOW|\\(FLAGS\\)[^\n]*BIND_NOW")
    require_in("${elf}" "the stack is executable" "\n +GNU_STACK [^\n]* RW +0x")
    if(elf MATCHES "\\(SONAME\\)|Flags: [^\n]*PIE") # what a test preloads may have nothing to guard
        require_in("${elf}" "no guard of the stack" " __stack_chk_fail@")
    endif()
    if(marks_jumps)
        require_in("${elf}" "jumps are not guarded" "x86 feature: IBT, SHSTK")
    endif()
endfunction()

# The linker marks a file as guarding its jumps if all its parts do, the C library's start files among them.
file(GLOB start_files /usr/lib/*/crti.o /usr/lib64/crti.o /usr/lib/crti.o)
set(marks_jumps FALSE)
foreach(start_file IN LISTS start_files)
    execute_process(COMMAND ${READELF} -n ${start_file} OUTPUT_VARIABLE notes)
    if(notes MATCHES "IBT, SHSTK")
        set(marks_jumps TRUE)
    endif()
endforeach()

foreach(file IN LISTS FILES)
    execute_process(
        COMMAND ${READELF} -hldnW --dyn-syms ${file}
        OUTPUT_VARIABLE elf
        RESULT_VARIABLE status
        ERROR_VARIABLE errors)
    if(NOT status EQUAL 0)
        complain("not to be read: ${errors}")
        continue()
    endif()
    string(REGEX REPLACE "\\[([^\n]*)\\]" "{\\1}" elf "${elf}") # brackets and semicolons mean something in lists
    string(REPLACE ";" "," elf "${elf}")
    check_runpath("${elf}")
    if(HARDENED)
        check_hardening("${elf}")
    endif()
endforeach()
list(LENGTH FILES count)
if(count EQUAL 0)
    message(SEND_ERROR "no file to look at")
endif()
