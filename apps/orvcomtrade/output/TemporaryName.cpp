#include "output/TemporaryName.h"

#include <fmt/format.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> kInterruptions = {SIGHUP, SIGINT, SIGTERM};

struct Registry {
    std::mutex mutex;
    std::set<std::string> names;
    std::size_t count = 0; ///< names there have been
    bool isWatching = false;
};

/// Never destroyed: the thread that waits for a signal uses it until the program ends.
Registry& registry() {
    static auto* const theOnly = new Registry;
    return *theOnly;
}

std::atomic<int> signalEnd = -1; // of a pipe, for writing
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler reads it");

/// A handler may not do more than hand the signal on.
void handOn(int signal) {
    const int error = errno;
    const auto number = static_cast<char>(signal);
    [[maybe_unused]] const ssize_t written = write(signalEnd, &number, 1);
    errno = error;
}

/// Keeps the lock, so that no name comes into being behind its back.
[[noreturn]] void endProgram(int signal) {
    const std::lock_guard<std::mutex> lock(registry().mutex);
    for (const std::string& name : registry().names) {
        unlink(name.c_str());
    }
    std::signal(signal, SIG_DFL);
    kill(getpid(), signal);
    for (;;) {
        pause();
    }
}

void awaitSignal(int readingEnd) {
    char number = 0;
    while (read(readingEnd, &number, 1) != 1) {
    }
    endProgram(number);
}

/// From now on the signals end the program by way of `endProgram`, but those that it ignores.
void watch() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return;
    }
    try {
        std::thread(awaitSignal, ends[0]).detach();
    } catch (const std::system_error&) {
        close(ends[0]);
        close(ends[1]);
        return;
    }
    signalEnd = ends[1];
    struct sigaction action = {};
    action.sa_handler = handOn;
    action.sa_flags = SA_RESTART;
    for (const int signal : kInterruptions) {
        struct sigaction before = {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL) {
            sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace

int TemporaryName::take(const std::string& folder, const std::function<int(const char* name)>& create) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    if (!all.isWatching) {
        all.isWatching = true;
        watch();
    }
    int error = EEXIST;
    while (error == EEXIST) {
        const auto name = all.names.insert(fmt::format("{}/.orvcomtrade-{}-{}", folder, getpid(), ++all.count)).first;
        error = create(name->c_str());
        if (error == 0) {
            _path = *name;
        } else {
            all.names.erase(name);
        }
    }
    return error;
}

TemporaryName::~TemporaryName() {
    if (isTaken()) {
        unlink(_path.c_str());
        release();
    }
}

void TemporaryName::release() {
    const std::lock_guard<std::mutex> lock(registry().mutex);
    registry().names.erase(_path);
    _path.clear();
}
