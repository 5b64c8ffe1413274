#pragma once

#include <string>

namespace OrvComtradeIntake {

struct ScratchSlot;

/// A place in the list of folders that SIGINT and SIGTERM remove. Made before the folder, since it may allocate; the
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

/// Takes the folder off the list. False if it is not this process's to remove: made before a fork, or being removed by
/// the signal handler.
bool releaseScratchFolder(const char* path) noexcept;

} // namespace OrvComtradeIntake
