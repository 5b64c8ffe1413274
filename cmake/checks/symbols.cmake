# The functions that the shared library exports are those of the committed list: its public classes and no others. (What
# the standard library instantiates is weak and not counted.) A change here is a change of the binary interface.
cmake_policy(VERSION 3.25)

execute_process(
    COMMAND sh -c "nm -DC --defined-only '${LIBRARY}' | awk '$2 == \"T\" { $1 = \"\"; $2 = \"\"; print }' | \
                   sed 's/^ *//; s/std::__cxx11::/std::/g' | LC_ALL=C sort -u | diff -u '${ROOT}/tests/api/exported-symbols.txt' -"
    OUTPUT_VARIABLE difference
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(SEND_ERROR "exported symbols differ from tests/api/exported-symbols.txt:\n${difference}")
endif()
