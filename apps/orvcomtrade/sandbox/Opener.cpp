#include "sandbox/Opener.h"

#include "output/Failure.h"
#include "output/writeWhole.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* kViewer = "xdg-open";
constexpr int kNoProgram = 127; // as shells have it

std::string readAll(int pipe) {
    std::string all;
    std::array<char, 4096> piece{};
    for (ssize_t count = read(pipe, piece.data(), piece.size()); count != 0;
         count = read(pipe, piece.data(), piece.size())) {
        if (count > 0) {
            all.append(piece.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return {};
        }
    }
    return all;
}

/// In a process of its own: it may end with the window.
int show(const char* file) {
    const pid_t process = fork();
    if (process == 0) {
        execlp(kViewer, kViewer, file, static_cast<char*>(nullptr));
        _exit(kNoProgram);
    }
    int status = 0;
    return process > 0 && waitpid(process, &status, 0) == process && WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

/// Names end in a zero byte.
[[noreturn]] void serve(int pipe) {
    const std::string names = readAll(pipe);
    int worst = 0;
    for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
        const int status = show(names.c_str() + begin);
        worst = status > worst ? status : worst;
    }
    _exit(worst);
}

} // namespace

Opener::~Opener() {
    if (_pipe >= 0) {
        close(_pipe);
        waitpid(_process, nullptr, 0);
    }
}

void Opener::begin() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) == 0) {
        _process = fork();
        if (_process == 0) {
            close(ends[1]);
            serve(ends[0]);
        }
        close(ends[0]);
        _pipe = ends[1];
    }
    if (_process < 0) {
        throw Failure(kRecordingProblem,
                      "no program can be started: " + std::error_code(errno, std::generic_category()).message());
    }
}

std::string Opener::open(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        const bool isLikeAnOption = !file.empty() && file.front() == '-';
        std::string line = isLikeAnOption ? "./" : "";
        line += file;
        line += '\0';
        writeWhole(_pipe, line);
    }
    close(std::exchange(_pipe, -1));
    int status = 0;
    waitpid(_process, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        return {};
    }
    const bool isAbsent = WIFEXITED(status) && WEXITSTATUS(status) == kNoProgram;
    return fmt::format(isAbsent ? "nothing is shown: there is no program {}" : "nothing is shown: {} failed", kViewer);
}
