#include "output/Progress.h"

#include "output/writeWhole.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unistd.h>

namespace {

constexpr std::size_t kBarWidth = 30;
constexpr std::chrono::seconds kPatience(1);

} // namespace

Progress::Progress(std::size_t total) : _total(total), _wanted(total > 0 && isatty(STDERR_FILENO) == 1) {}

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
               fmt::format("\r[{}{}] {} of {} {}, {} s", std::string(filled, '#'), std::string(kBarWidth - filled, '.'),
                           done, _total, _total == 1 ? "recording" : "recordings",
                           std::chrono::duration_cast<std::chrono::seconds>(passed).count()));
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
