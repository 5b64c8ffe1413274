# The version stands in CMakeLists.txt. The newest release in CHANGELOG.md is that one, with a place above it for what
# comes next, and so is that of debian/changelog. Nothing else that is built, installed or read repeats it.
cmake_policy(VERSION 3.25)
file(READ ${ROOT}/CMakeLists.txt project)
string(REGEX MATCH "[ (]VERSION ([0-9]+\\.[0-9]+\\.[0-9]+)\n" found "${project}")
set(version "${CMAKE_MATCH_1}")
if(NOT version)
    message(SEND_ERROR "CMakeLists.txt states no version")
endif()

file(STRINGS ${ROOT}/CHANGELOG.md headings REGEX "^## ")
list(POP_FRONT headings unreleased newest)
if(NOT unreleased STREQUAL "## [Unreleased]")
    message(SEND_ERROR "CHANGELOG.md does not begin with \"## [Unreleased]\"")
endif()
if(NOT newest MATCHES "^## \\[([0-9.]+)\\]" OR NOT CMAKE_MATCH_1 STREQUAL version)
    message(SEND_ERROR "CMakeLists.txt states ${version}, the newest release in CHANGELOG.md is \"${newest}\"")
endif()

file(STRINGS ${ROOT}/python/pyproject.toml python REGEX "^version = \"${version}\"")
if(NOT python)
    message(SEND_ERROR "python/pyproject.toml does not state ${version}")
endif()

file(STRINGS ${ROOT}/debian/changelog entries LIMIT_COUNT 1)
if(NOT entries MATCHES "^orvcomtradelib \\(${version}-")
    message(SEND_ERROR "debian/changelog does not begin with ${version}: ${entries}")
endif()

string(REPLACE "." "\\." pattern "${version}")
execute_process(
    COMMAND grep -rnE "(^|[^0-9.])${pattern}($|[^0-9.])" README.md CONTRIBUTING.md apps bench cmake docs examples include
            intake scripts src .github
    WORKING_DIRECTORY ${ROOT}
    OUTPUT_VARIABLE repeated
    RESULT_VARIABLE status)
if(NOT status EQUAL 1)
    message(SEND_ERROR "the version stands elsewhere too, or no grep (${status}):\n${repeated}")
endif()
