#include "files/folderNames.h"

#include "base/characters.h"
#include "files/FileError.h"
#include "files/FolderListings.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <functional>
#include <memory>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kMostNames = 10000;
constexpr std::size_t kMostAlike = 1000; // thousands of copies of one file begin alike

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

} // namespace

std::vector<std::string> allNames(const std::string& folder, std::size_t most) {
    std::vector<std::string> names;
    // Not std::filesystem: its iterator ends the program where memory runs out.
    const std::unique_ptr<DIR, CloseFolder> list(opendir(folder.empty() ? "." : folder.c_str()));
    if (!list && (errno == ENOENT || errno == ENOTDIR)) {
        return names;
    }
    if (!list) {
        throwFileError(errno, folder);
    }
    for (std::size_t seen = 0; seen < most; ++seen) {
        errno = 0;
        const dirent* const entry = readdir(list.get());
        if (entry == nullptr && errno != 0) {
            throwFileError(errno, folder);
        }
        if (entry == nullptr) {
            break;
        }
        if (entry->d_type != DT_DIR) {
            names.emplace_back(entry->d_name);
        }
    }
    return names;
}

bool isBeforeWithoutCase(std::string_view left, std::string_view right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), [](char one, char other) {
        return static_cast<unsigned char>(lowerCase(one)) < static_cast<unsigned char>(lowerCase(other));
    });
}

std::vector<std::string> folderNames(const std::string& folder, std::string_view beginning, const Folders* folders) {
    const auto isAlike = [wanted = lowerCase(beginning)](const std::string& name) {
        return name.size() >= wanted.size() && lowerCase(name.substr(0, wanted.size())) == wanted;
    };
    std::vector<std::string> names;
    if (folders == nullptr) {
        names = allNames(folder, kMostNames);
        names.erase(std::remove_if(names.begin(), names.end(), std::not_fn(isAlike)), names.end());
    } else {
        const Folders::Listings::Names all = folders->listings().of(folder);
        auto name = std::lower_bound(all->begin(), all->end(), beginning, isBeforeWithoutCase);
        for (; name != all->end() && names.size() < kMostAlike && isAlike(*name); ++name) {
            names.push_back(*name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace OrvComtradeIntake
