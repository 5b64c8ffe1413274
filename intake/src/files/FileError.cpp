#include "files/FileError.h"

#include <cerrno>
#include <new>

namespace OrvComtradeIntake {

namespace {

class Changes : public std::error_category {
public:
    const char* name() const noexcept override { return "file change"; }

    std::string message(int change) const override {
        switch (static_cast<FileChange>(change)) {
        case FileChange::Shorter:
            return "a file that became shorter";
        case FileChange::Longer:
            return "a file that became longer";
        case FileChange::Rewritten:
            break;
        }
        return "a file that was written to";
    }
};

const Changes kChanges;

Kind kindOf(const std::error_code& error) {
    if (error.category() == kChanges) {
        return Kind::FileChanged;
    }
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
        return Kind::NoSuchFile;
    }
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted) {
        return Kind::NoPermission;
    }
    if (error == std::errc::not_supported || error == std::errc::is_a_directory) {
        return Kind::NotAFile;
    }
    return Kind::Unreadable;
}

} // namespace

std::error_code make_error_code(FileChange change) {
    return {static_cast<int>(change), kChanges};
}

void throwFileError(int error, const std::string& path) {
    if (error == ENOMEM) {
        throw std::bad_alloc();
    }
    throw FileError({error, std::generic_category()}, path);
}

void reportFileError(const FileError& error, Findings& findings) {
    const bool isSpecial = error.code() == std::errc::not_supported;
    findings.add(kindOf(error.code()), {error.path(), 0, ""},
                 {isSpecial ? "a pipe or a device" : error.code().message()});
}

} // namespace OrvComtradeIntake
