#include "files/folderNames.h"

#include "base/characters.h"
#include "files/FileError.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <memory>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kMostNames = 10000;

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

} // namespace

std::vector<std::string> folderNames(const std::string& folder, std::string_view beginning) {
    std::vector<std::string> names;
    // Not std::filesystem: its iterator ends the program where memory runs out.
    const std::unique_ptr<DIR, CloseFolder> list(opendir(folder.empty() ? "." : folder.c_str()));
    if (!list && (errno == ENOENT || errno == ENOTDIR)) {
        return names;
    }
    if (!list) {
        throwFileError(errno, folder);
    }
    const std::string wanted = lowerCase(beginning);
    for (std::size_t seen = 0; seen < kMostNames; ++seen) {
        errno = 0;
        const dirent* const entry = readdir(list.get());
        if (entry == nullptr && errno != 0) {
            throwFileError(errno, folder);
        }
        if (entry == nullptr) {
            break;
        }
        const std::string_view name = entry->d_name;
        if (entry->d_type != DT_DIR && name.size() >= wanted.size() &&
            lowerCase(name.substr(0, wanted.size())) == wanted) {
            names.emplace_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace OrvComtradeIntake
