#include "OrvCommon.h"

namespace Orv {

bool fileExist(const std::string& path) {
    return std::ifstream(path).is_open();
}

std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode) {
    return std::ifstream(path, mode);
}

} // namespace Orv
