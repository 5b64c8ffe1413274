# Sources are ASCII: other characters stand as escapes, so that no editor or code page can change them.
cmake_policy(VERSION 3.25)
execute_process(
    COMMAND grep -rnP "[^\\x00-\\x7F]" --include=*.h --include=*.cpp --include=*.js --include=*.css --include=*.html --exclude-dir=node_modules include src intake page picture platform apps examples
            tests bench fuzz
    WORKING_DIRECTORY ${ROOT}
    OUTPUT_VARIABLE found
    RESULT_VARIABLE status)
if(NOT status EQUAL 1)
    message(SEND_ERROR "bytes beyond ASCII, or no grep (${status}):\n${found}")
endif()
