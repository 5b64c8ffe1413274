#pragma once

#include "check.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace fuzz {

/// A folder for the files of one process, in memory where the system has such a place; removed at a normal end.
class ScratchFolder {
public:
    ScratchFolder() {
        std::error_code ignored;
        const std::filesystem::path memory = "/dev/shm";
        const bool usable = std::filesystem::is_directory(memory, ignored);
        _path = ((usable ? memory : std::filesystem::temp_directory_path()) / "orvcomtrade-fuzz-XXXXXX").string();
        FUZZ_CHECK(mkdtemp(_path.data()) != nullptr);
    }

    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }

    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ScratchFolder(ScratchFolder&&) = delete;
    ScratchFolder& operator=(ScratchFolder&&) = delete;

    /// Without a slash at the end.
    const std::string& path() const { return _path; }

    /// Makes the file with exactly these bytes and gives its path.
    std::string write(const char* name, std::string_view bytes) const {
        const std::string path = _path + "/" + name;
        std::FILE* const file = std::fopen(path.c_str(), "wb");
        FUZZ_CHECK(file != nullptr);
        const std::size_t written = std::fwrite(bytes.data(), 1, bytes.size(), file);
        FUZZ_CHECK(std::fclose(file) == 0 && written == bytes.size());
        return path;
    }

private:
    std::string _path;
};

} // namespace fuzz
