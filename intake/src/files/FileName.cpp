#include "files/FileName.h"

namespace OrvComtradeIntake {

FileName FileName::of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
    const std::string name = path.substr(begin);
    const std::size_t dot = name.rfind('.');
    FileName parts;
    parts.folder = path.substr(0, begin);
    parts.stem = name.substr(0, dot);
    parts.extension = dot == std::string::npos ? "" : name.substr(dot);
    return parts;
}

} // namespace OrvComtradeIntake
