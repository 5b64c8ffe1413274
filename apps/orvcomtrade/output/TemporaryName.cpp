#include "output/TemporaryName.h"

#include <fmt/format.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <mutex>
#include <new>
#include <set>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::array<int, 5> kInterruptions = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU};

struct Registry {
    std::mutex mutex; ///< kept for good by who ends the program, so that no name comes into being behind its back
    std::set<std::string> names;
    std::size_t count = 0; ///< names there have been
    std::size_t uninterrupted = 0;
    std::condition_variable isInterruptible;
    bool isEnding = false;
    bool isWatching = false;
};

/// Never destroyed: the thread that waits for a signal uses it until the program ends. Takes no memory of the heap,
/// where there may be none.
Registry& registry() {
    alignas(Registry) static std::array<unsigned char, sizeof(Registry)> place;
    static auto* const theOnly = new (place.data()) Registry;
    return *theOnly;
}

std::atomic<int> signalEnd = -1; // of a pipe, for writing
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler reads it");

/// A handler may not do more than hand the signal on.
void handOn(int signal) {
    const int error = errno;
    const auto number = static_cast<char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(signalEnd, &number, 1);
    errno = error;
}

[[noreturn]] void endProgram(int signal) {
    TemporaryName::removeAll();
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

/// From now on the signals end the program by way of `endProgram`, but those that it ignores. The caller has the lock.
void watch() {
    if (std::exchange(registry().isWatching, true)) {
        return;
    }
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
    watch();
    int error = EEXIST;
    while (error == EEXIST) {
        std::string path = fmt::format("{}/.orvcomtrade-{}-{}", folder, getpid(), ++all.count);
        const auto name = all.names.insert(path).first;
        error = create(name->c_str());
        if (error == 0) {
            _path = std::move(path);
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

Uninterrupted::Uninterrupted() {
    Registry& all = registry();
    std::unique_lock<std::mutex> lock(all.mutex);
    watch();
    all.isInterruptible.wait(lock, [&all] { return !all.isEnding; }); // for ever, if it is
    ++all.uninterrupted;
}

Uninterrupted::~Uninterrupted() {
    Registry& all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    --all.uninterrupted;
    all.isInterruptible.notify_all();
}

void TemporaryName::removeAll() {
    Registry& all = registry();
    std::unique_lock<std::mutex> lock(all.mutex);
    all.isEnding = true;
    all.isInterruptible.wait(lock, [&all] { return all.uninterrupted == 0; });
    for (const std::string& name : all.names) {
        unlink(name.c_str());
    }
    lock.release();
}
