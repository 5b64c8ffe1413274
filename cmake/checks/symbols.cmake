# What the shared library exports is the committed list: what its public headers declare, with the tables and type
# information of the classes, and no others. Weak instantiations of the standard library's templates are not counted: each
# compiler leaves others behind. A change here is a change of the binary interface.
cmake_policy(VERSION 3.25)

execute_process(
    COMMAND sh -c "nm -D --defined-only '${LIBRARY}' | sed 's/^[0-9a-f]* *//' | \
                   grep -vE '^[WVu] _Z(GV|T[IS]|ZN?)?N?K?(St|S[absiod]|9__gnu_cxx)' | cut -c3- | c++filt | \
                   sed 's/std::__cxx11::/std::/g' | LC_ALL=C sort -u | diff -u '${ROOT}/tests/api/exported-symbols.txt' -"
    OUTPUT_VARIABLE difference
    ERROR_VARIABLE errors
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(SEND_ERROR "exported symbols differ from tests/api/exported-symbols.txt:\n${difference}${errors}")
endif()
