#pragma once

#include <array>
#include <csignal>
#include <string>

namespace OrvComtradeIntake {

struct ScratchSlot;

/// The signals at which folders are removed: an interrupt, a request to end, a terminal that closes.
constexpr std::array<int, 3> kEndingSignals = {SIGINT, SIGTERM, SIGHUP};

/// A place in the list of folders that these signals remove. Made before the folder, since it may allocate; the
/// first one of the process installs the handlers.
class ScratchPlace {
public:
    ScratchPlace();
    ~ScratchPlace();
    ScratchPlace(const ScratchPlace&) = delete;
    ScratchPlace& operator=(const ScratchPlace&) = delete;
    ScratchPlace(ScratchPlace&&) = delete;
    ScratchPlace& operator=(ScratchPlace&&) = delete;

    /// Registers the folder for this process. A path that is longer than any that can be opened is not registered.
    void take(const std::string& path) const noexcept;

private:
    ScratchSlot* _slot;
};

/// Whether the folder is this process's to remove: not so if it was made before a fork, or if the signal handler is
/// removing it.
bool isOwnScratchFolder(const char* path) noexcept;

/// Takes the folder off the list, once it is removed: a signal that comes in between still finds it there.
void releaseScratchFolder(const char* path) noexcept;

} // namespace OrvComtradeIntake
