#pragma once

#include "support/files.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace orvtest {

/// A folder of its own for one test, removed with everything in it when the test ends.
class TempDir {
public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "orvcomtrade-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot make a temporary folder like " + pattern);
        _path = pattern;
    }

    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }

    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    TempDir(TempDir&&) = delete;
    TempDir& operator=(TempDir&&) = delete;

    /// The folder, without a slash at the end. No '.' occurs in its last part.
    const std::string& path() const { return _path; }

    /// The path of a file in the folder, whether it exists or not.
    std::string file(const std::string& name) const { return _path + "/" + name; }

    /// Makes the file with exactly these bytes, replacing one of that name, and gives its path.
    std::string write(const std::string& name, const std::string& bytes) const {
        writeFile(file(name), bytes);
        return file(name);
    }

private:
    std::string _path;
};

} // namespace orvtest
