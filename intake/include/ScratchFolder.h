#pragma once

#include <string>

namespace OrvComtradeIntake {

/// A private temporary folder (mode 0700), removed with everything in it by the destructor, and on SIGINT, SIGTERM
/// and SIGHUP where the program has left these at their default when the first folder is made. Moved, not copied.
class ScratchFolder {
public:
    ScratchFolder() = default; ///< No folder.

    /// Makes a folder of a new name inside `parent` (empty: TMPDIR, else /tmp). Throws `std::system_error`.
    static ScratchFolder make(const std::string& parent);

    ScratchFolder(ScratchFolder&& other) noexcept; ///< Takes the folder over.

    /// Removes its own folder and takes the other's over.
    ScratchFolder& operator=(ScratchFolder&& other) noexcept;

    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    /// Path of the folder, or empty.
    const std::string& path() const { return _path; }

private:
    explicit ScratchFolder(std::string path);
    void _remove() noexcept;

    std::string _path;
};

} // namespace OrvComtradeIntake
