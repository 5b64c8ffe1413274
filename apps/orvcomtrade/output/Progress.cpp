#include "output/Progress.h"

#include "output/writeWhole.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <unistd.h>

namespace {

constexpr std::size_t kBarWidth = 30;
constexpr std::chrono::seconds kPatience(1);

std::int64_t secondsOf(std::chrono::steady_clock::duration time) {
    return std::chrono::duration_cast<std::chrono::seconds>(time).count();
}

/// How long the rest takes if it goes on like this, from the moment on from which that is a good guess.
std::string leftText(std::chrono::steady_clock::duration passed, std::size_t done, std::size_t total) {
    constexpr std::size_t enough = 3;
    if (done < enough || done >= total) {
        return {};
    }
    const auto left = passed / static_cast<std::int64_t>(done) * static_cast<std::int64_t>(total - done);
    return fmt::format(", about {} s left", secondsOf(left) + 1);
}

} // namespace

Progress::Progress(std::size_t total, bool wanted)
    : _total(total), _wanted(wanted && total > 0 && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    _erase();
}

void Progress::show(std::size_t done) {
    const auto passed = std::chrono::steady_clock::now() - _begin;
    if (!_wanted || passed < kPatience) {
        return;
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    const std::size_t filled = kBarWidth * std::min(done, _total) / _total;
    // The seconds show that one long recording is still being worked on.
    writeWhole(STDERR_FILENO,
               fmt::format("\r[{}{}] {} of {} {}, {} s{}\x1B[K", std::string(filled, '#'),
                           std::string(kBarWidth - filled, '.'), done, _total, _total == 1 ? "recording" : "recordings",
                           secondsOf(passed), leftText(passed, done, _total)));
    _shown = true;
}

std::unique_lock<std::mutex> Progress::hide() {
    std::unique_lock<std::mutex> lock(_mutex);
    _erase();
    return lock;
}

void Progress::_erase() {
    if (_shown) {
        writeWhole(STDERR_FILENO, "\r\x1B[K");
        _shown = false;
    }
}
