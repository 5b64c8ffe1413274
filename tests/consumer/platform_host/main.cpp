#include "OrvCommon.h"

#include <ios>

int main(int argc, char** argv) {
    return argc > 1 && Orv::fileExist(argv[1]) && Orv::openInputFileUTF8Name(argv[1], std::ios_base::binary) ? 0 : 1;
}
