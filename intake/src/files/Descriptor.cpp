#include "files/Descriptor.h"

#include <unistd.h>

namespace OrvComtradeIntake {

std::string Descriptor::path() const {
    std::string path = "/proc/self/fd/" + std::to_string(_number);
    if (access(path.c_str(), F_OK) != 0) {
        path.clear(); // as in a container without /proc
    }
    return path;
}

void Descriptor::_close() const {
    if (isOpen()) {
        close(_number);
    }
}

} // namespace OrvComtradeIntake
