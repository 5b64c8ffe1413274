#pragma once

#include "files/Descriptor.h"

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// A file without a name, to be written and then opened by `path()`. It is in memory on Linux, elsewhere among the
/// temporary files. Since it has no name in any folder, nothing of it is left however the program ends. It can be moved
/// but not copied.
class NamelessFile {
public:
    /// Throws `std::system_error` if no such file can be made, or opened again.
    NamelessFile();

    /// Appends the bytes. They are collected into large pieces; the last piece is in the file only after `finish`.
    /// Throws `std::system_error`.
    void write(std::string_view bytes);

    /// Brings what was written into the file. Throws `std::system_error`.
    void finish();

    /// Opens the file while this object lives ("/proc/self/fd/8").
    const std::string& path() const { return _path; }

private:
    void _writeOut(std::string_view bytes) const;

    Descriptor _file;
    std::string _path;
    std::string _pending; ///< not in the file yet
};

} // namespace OrvComtradeIntake
