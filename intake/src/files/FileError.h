#pragma once

#include "report/Findings.h"

#include <string>
#include <system_error>

namespace OrvComtradeIntake {

/// Error codes for a file that changes while it is read.
enum class FileChange { Shorter = 1, Longer, Rewritten };

std::error_code make_error_code(FileChange change); // NOLINT(readability-identifier-naming): the library's name

/// A file that can't be read, or that changed while it was read.
class FileError : public std::system_error {
public:
    FileError(std::error_code error, std::string path) : system_error(error, path), _path(std::move(path)) {}

    const std::string& path() const { return _path; }

private:
    std::string _path;
};

/// Throws `std::bad_alloc` if the value of errno means lack of memory, otherwise a FileError.
[[noreturn]] void throwFileError(int error, const std::string& path);

/// Adds a finding of severity Error with the cause.
void reportFileError(const FileError& error, Findings& findings);

} // namespace OrvComtradeIntake

template <> struct std::is_error_code_enum<OrvComtradeIntake::FileChange> : std::true_type {};
