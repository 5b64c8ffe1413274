# The host program of the README is the marked region of the example that is built and run.
cmake_policy(VERSION 3.25)
file(READ ${ROOT}/README.md readme)
file(READ ${ROOT}/examples/quick_start.cpp example)
string(REGEX REPLACE ".*// \\[quick_start\\]\n(.*)// \\[/quick_start\\].*" "\\1" region "${example}")
string(FIND "${readme}" "```cpp\n${region}```" position)
if(position EQUAL -1)
    message(SEND_ERROR "README.md does not hold the marked region of examples/quick_start.cpp")
endif()
