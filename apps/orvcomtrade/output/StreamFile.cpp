#include "output/StreamFile.h"

#include "output/Failure.h"
#include "output/printable.h"
#include "output/writeWhole.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const std::string& path, int error) {
    throw Failure(kRecordingProblem, fmt::format("{}: cannot be written: {}", printable(path), std::strerror(error)));
}

/// The program's descriptor that a path leads to by however many links.
std::optional<int> descriptorOf(fs::path path) {
    constexpr int mostLinks = 8;
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code error;
        const fs::path folder = fs::canonical(path.has_parent_path() ? path.parent_path() : ".", error);
        const std::string name = path.filename().string();
        if (!error && folder == fmt::format("/proc/{}/fd", getpid())) {
            int number = -1;
            const auto [stop, problem] = std::from_chars(name.data(), name.data() + name.size(), number);
            return problem == std::errc() && stop == name.data() + name.size() ? std::optional(number) : std::nullopt;
        }
        const fs::path next = fs::read_symlink(path, error);
        if (error) {
            return std::nullopt;
        }
        path = next.is_absolute() ? next : folder / next;
    }
    return std::nullopt;
}

int opened(const std::string& path) {
    const std::optional<int> descriptor = descriptorOf(path);
    return descriptor ? fcntl(*descriptor, F_DUPFD_CLOEXEC, 0) : open(path.c_str(), O_WRONLY | O_CLOEXEC);
}

} // namespace

bool isStream(const std::string& path) {
    struct stat status = {};
    return descriptorOf(path) || (stat(path.c_str(), &status) == 0 && S_ISCHR(status.st_mode));
}

StreamFile::StreamFile(const std::string& path) : _path(path), _file(opened(path)) {
    if (_file < 0) {
        fail(_path, errno);
    }
}

StreamFile::~StreamFile() {
    close(_file);
}

void StreamFile::send(std::string_view piece) {
    if (writeWhole(_file, piece)) {
        return;
    }
    if (errno == EPIPE) {
        throw ReaderGone();
    }
    fail(_path, errno);
}
