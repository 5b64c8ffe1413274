# In the preset of the sanitizers, what takes long to compile and runs for a moment: optimised, it would take two to three
# times as long to compile, and the tests run no sooner.
function(orv_leave_unoptimised target)
    if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=address")
        target_compile_options(${target} PRIVATE -O0)
    endif()
endfunction()
