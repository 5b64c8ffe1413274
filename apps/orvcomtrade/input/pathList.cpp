#include "input/pathList.h"

#include "input/standardInput.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <ios>
#include <iterator>

namespace {

std::string bytesOf(const std::string& path) {
    if (path == "-") {
        return standardInput(SIZE_MAX);
    }
    errno = 0;
    try {
        std::ifstream file(path, std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        if (file && errno == 0) {
            return bytes;
        }
    } catch (const std::ios_base::failure&) { // a folder opens, and fails as it is read
    }
    throw Failure(kWrongUsage, fmt::format("{}: {}", printable(path), std::strerror(errno)));
}

} // namespace

std::vector<std::string> pathList(const std::string& file, bool areEndedByNul) {
    const std::string bytes = bytesOf(file);
    std::vector<std::string> paths;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = std::min(bytes.find(areEndedByNul ? '\0' : '\n', begin), bytes.size());
        std::string path = bytes.substr(begin, end - begin);
        if (!areEndedByNul && !path.empty() && path.back() == '\r') {
            path.pop_back();
        }
        if (!path.empty()) {
            paths.push_back(std::move(path));
        }
        begin = end + 1;
    }
    return paths;
}
