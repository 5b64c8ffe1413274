#include "childProcess.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvbench {

namespace {

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// Spawned, not forked: the peak of a forked process would be that of this one.
pid_t start(const std::vector<std::string>& words, int output) {
    std::vector<char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = 0;
    const int error = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot run " + words.front());
    }
    return child;
}

Cost await(pid_t child, const std::string& program) {
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    if (status != 0) {
        throw std::runtime_error(program + " failed");
    }
    return {secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime), static_cast<double>(usage.ru_maxrss) * 1024.0};
}

} // namespace

Cost costOf(const std::vector<std::string>& words) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const pid_t child = start(words, nowhere);
    close(nowhere);
    return await(child, words.front());
}

std::string outputOf(const std::vector<std::string>& words) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = start(words, ends[1]);
    close(ends[1]);
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t length = 0; (length = read(ends[0], piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(length));
    }
    close(ends[0]);
    await(child, words.front());
    return text;
}

} // namespace orvbench
