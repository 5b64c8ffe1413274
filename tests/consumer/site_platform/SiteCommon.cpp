#include "OrvCommon.h"

namespace Orv {

namespace {

/// "site:PATH" is a name for PATH that only this library knows: what opens it has been linked with this one.
std::string plainPath(const std::string& path) {
    const std::string prefix = "site:";
    return path.compare(0, prefix.size(), prefix) == 0 ? path.substr(prefix.size()) : path;
}

} // namespace

bool fileExist(const std::string& path) {
    return std::ifstream(plainPath(path)).is_open();
}

std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode) {
    return std::ifstream(plainPath(path), mode);
}

} // namespace Orv
