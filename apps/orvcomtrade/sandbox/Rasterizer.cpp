#include "sandbox/Rasterizer.h"

#include "output/Failure.h"
#include "output/writeWhole.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sstream>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr const char* kRasterizer = "rsvg-convert";

/// Where PATH has the program; empty where it has none. The current folder is not looked into, whatever PATH says:
/// recordings come with strangers' files.
std::string pathOfProgram() {
    const char* const folders = std::getenv("PATH"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    std::istringstream list(folders == nullptr ? "" : folders);
    for (std::string folder; std::getline(list, folder, ':');) {
        if (folder.empty() || folder.front() != '/') {
            continue;
        }
        std::string path = folder + "/" + kRasterizer;
        if (access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

bool readWhole(int file, char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t got = read(file, bytes, count);
        if (got == 0 || (got < 0 && errno != EINTR)) {
            return false;
        }
        bytes += got > 0 ? got : 0;
        count -= got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return true;
}

/// A message is its length and its bytes.
bool sendMessage(int socket, std::string_view message) {
    std::array<char, sizeof(std::uint64_t)> length{};
    const std::uint64_t size = message.size();
    std::memcpy(length.data(), &size, length.size());
    return writeWhole(socket, {length.data(), length.size()}) && writeWhole(socket, message);
}

std::optional<std::string> receiveMessage(int socket) {
    std::array<char, sizeof(std::uint64_t)> length{};
    std::uint64_t size = 0;
    if (!readWhole(socket, length.data(), length.size())) {
        return std::nullopt;
    }
    std::memcpy(&size, length.data(), length.size());
    std::string message(size, '\0');
    return readWhole(socket, message.data(), message.size()) ? std::optional(std::move(message)) : std::nullopt;
}

std::string contentsOf(int file) {
    const off_t size = lseek(file, 0, SEEK_END);
    std::string contents(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    lseek(file, 0, SEEK_SET);
    return readWhole(file, contents.data(), contents.size()) ? contents : std::string();
}

/// From file to file, neither with a name. Gives the PNG, or nothing.
std::string converted(const std::string& program, const std::string& svg) {
    const int in = memfd_create("svg", MFD_CLOEXEC);
    const int out = memfd_create("png", MFD_CLOEXEC);
    std::string png;
    if (in >= 0 && out >= 0 && writeWhole(in, svg) && lseek(in, 0, SEEK_SET) == 0) {
        const pid_t process = fork();
        if (process == 0) {
            const int silent = open("/dev/null", O_WRONLY | O_CLOEXEC);
            dup2(in, STDIN_FILENO);
            dup2(out, STDOUT_FILENO);
            dup2(silent, STDERR_FILENO);
            execl(program.c_str(), kRasterizer, "--format=png", static_cast<char*>(nullptr));
            _exit(1);
        }
        int status = 0;
        if (process > 0 && waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0) {
            png = contentsOf(out);
        }
    }
    close(in);
    close(out);
    return png;
}

[[noreturn]] void serve(int socket, const std::string& program) {
    while (const std::optional<std::string> svg = receiveMessage(socket)) {
        if (!sendMessage(socket, converted(program, *svg))) {
            break;
        }
    }
    _exit(0);
}

} // namespace

Rasterizer::~Rasterizer() {
    if (_socket >= 0) {
        close(_socket);
        waitpid(_process, nullptr, 0);
    }
}

void Rasterizer::begin() {
    const std::string program = pathOfProgram();
    if (program.empty()) {
        throw Failure(kRecordingProblem,
                      std::string("PNG needs the program ") + kRasterizer +
                          ", which is not installed (Debian has it in librsvg2-bin); SVG needs no other program");
    }
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0) {
        _process = fork();
        if (_process == 0) {
            close(ends[1]);
            serve(ends[0], program);
        }
        close(ends[0]);
        _socket = ends[1];
    }
    if (_process < 0) {
        throw Failure(kRecordingProblem,
                      "no program can be started: " + std::error_code(errno, std::generic_category()).message());
    }
}

std::string Rasterizer::png(std::string_view svg) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const std::optional<std::string> png = sendMessage(_socket, svg) ? receiveMessage(_socket) : std::nullopt;
    if (!png || png->empty()) {
        throw Failure(kRecordingProblem, std::string(kRasterizer) + " made no picture of it");
    }
    return *png;
}
