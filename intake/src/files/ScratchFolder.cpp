#include "ScratchFolder.h"

#include "scratchRegistry.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace OrvComtradeIntake {

namespace {

/// Keeps the ending signals away from this thread, so that no folder is left between its making and its registration;
/// in another thread the handler waits for that.
class SignalPause {
public:
    SignalPause() {
        sigset_t paused;
        sigemptyset(&paused);
        for (const int ending : kEndingSignals) {
            sigaddset(&paused, ending);
        }
        pthread_sigmask(SIG_BLOCK, &paused, &_before);
    }
    ~SignalPause() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;
    SignalPause(SignalPause&&) = delete;
    SignalPause& operator=(SignalPause&&) = delete;

private:
    sigset_t _before{};
};

std::string usualParent() {
    const char* const given = std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe)
    return given != nullptr && *given != '\0' ? given : "/tmp";
}

} // namespace

ScratchFolder ScratchFolder::make(const std::string& parent) {
    std::string path = (parent.empty() ? usualParent() : parent) + "/orvcomtrade-XXXXXX";
    const SignalPause pause;
    const ScratchPlace place; // has what registering needs before there is a folder to lose
    if (mkdtemp(path.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    place.take(path);
    return ScratchFolder(std::move(path));
}

ScratchFolder::ScratchFolder(std::string path) : _path(std::move(path)) {}

ScratchFolder::ScratchFolder(ScratchFolder&& other) noexcept : _path(std::exchange(other._path, {})) {}

ScratchFolder& ScratchFolder::operator=(ScratchFolder&& other) noexcept {
    if (this != &other) {
        _remove();
        _path = std::exchange(other._path, {});
    }
    return *this;
}

ScratchFolder::~ScratchFolder() {
    _remove();
}

void ScratchFolder::_remove() noexcept {
    if (_path.empty()) {
        return;
    }
    if (isOwnScratchFolder(_path.c_str())) {
        std::error_code ignored; // nothing can be done about a folder that resists
        std::filesystem::remove_all(_path, ignored);
    }
    releaseScratchFolder(_path.c_str());
}

} // namespace OrvComtradeIntake
