#include "input/collectRecordings.h"

#include "StringHelper.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace fs = std::filesystem;
using OrvComtradeLib::StringHelper;

namespace {

constexpr const char* kLeadsOut = "it leads out of the folder that is searched; --follow-links follows it";

/// How well a file stands for its recording: the lower the better.
enum class Kind { Cfg, Cff, Dat, Other };

std::string_view extensionOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot);
}

std::string_view stemOf(std::string_view name) {
    return name.substr(0, name.size() - extensionOf(name).size());
}

/// None for the name of a file that belongs to no recording.
std::optional<Kind> kindOf(std::string_view name) {
    const std::string extension = StringHelper::toLower(std::string(extensionOf(name)));
    if (extension == ".cfg") {
        return Kind::Cfg;
    }
    if (extension == ".cff") {
        return Kind::Cff;
    }
    if (extension == ".dat") {
        return Kind::Dat;
    }
    if (extension == ".hdr" || extension == ".inf") {
        return Kind::Other;
    }
    return std::nullopt;
}

std::string_view nameOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

/// The same for every path that leads to the folder.
std::string identityOf(const std::string& folder) {
    std::error_code error;
    const fs::path canonical = fs::canonical(folder, error);
    return error ? folder : canonical.string();
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.empty() || folder.back() == '/' ? folder + name : folder + '/' + name;
}

/// A pipe or a device may have no end.
bool isNoRegularFile(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

bool isAbsent(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

std::string problemOfFile(const std::string& path) {
    if (path.empty()) {
        return "a file with an empty name cannot be read";
    }
    const auto kind = kindOf(nameOf(path));
    if (!kind && isAbsent(path)) {
        return printable(path) + ": No such file or directory";
    }
    if (kind && *kind != Kind::Other) {
        return isNoRegularFile(path) ? printable(path) + ": not a file of a recording: it is no regular file" : "";
    }
    if (nameOf(path).find('.') == std::string_view::npos) {
        return fmt::format(
            "{}: not a file of a recording: the path has no extension; name the .cfg, .dat or .cff file, or a folder",
            printable(path));
    }
    return fmt::format("{}: not a file of a recording: the extension is none of .cfg, .dat and .cff", printable(path));
}

struct NamesOfFolder {
    std::vector<std::string> names; ///< sorted
    int error = 0;
};

NamesOfFolder namesOfFolder(const std::string& folder) {
    NamesOfFolder result;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), closedir);
    if (!stream) {
        result.error = errno;
        return result;
    }
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            result.names.emplace_back(name);
        }
        errno = 0;
    }
    result.error = errno;
    std::sort(result.names.begin(), result.names.end());
    return result;
}

using FileId = std::pair<dev_t, ino_t>;

FileId idOf(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

class Collector {
public:
    Collector(bool followsLinks, const std::string& outputFolder) : _followsLinks(followsLinks) {
        struct stat status = {};
        if (!outputFolder.empty() && stat(outputFolder.c_str(), &status) == 0) {
            _outputIdentity = idOf(status);
        }
    }

    void addFile(const std::string& path) {
        const auto kind = kindOf(nameOf(path));
        _add({path, std::string(stemOf(nameOf(path))), problemOfFile(path)}, identityOf(folderOf(path)),
             kind.value_or(Kind::Other));
    }

    /// `target` leads the targets of what is found.
    void addFolder(const std::string& folder, const std::string& target) {
        const std::size_t before = _entries.size();
        const std::size_t known = _repeated;
        _root = identityOf(folder);
        _search(folder, target, true);
        if (_entries.size() == before && _repeated == known) {
            _entries.push_back({folder, target, fmt::format("{}: no recording in this folder", printable(folder))});
        }
    }

    Selection take(bool single) { return {std::move(_entries), single, std::move(_notes)}; }

private:
    struct Place {
        std::size_t entry;
        Kind kind;
    };

    void _add(Entry entry, const std::string& folderIdentity, Kind kind) {
        // A file that is none of a recording stands for itself alone.
        const bool alone = kind == Kind::Other && !kindOf(nameOf(entry.path));
        const std::string key =
            alone ? entry.path : joined(folderIdentity, std::string(stemOf(nameOf(entry.path)))) + ".";
        const auto [place, isNew] = _places.try_emplace(key, Place{_entries.size(), kind});
        if (isNew) {
            _entries.push_back(std::move(entry));
            return;
        }
        ++_repeated;
        Entry& known = _entries[place->second.entry];
        known.isMet = known.isMet && entry.isMet;
        if (kind < place->second.kind) {
            place->second.kind = kind;
            known.path = std::move(entry.path);
            known.problem = std::move(entry.problem);
        }
    }

    void _search(const std::string& folder, const std::string& target, bool isNamed = false) {
        struct stat status = {};
        if (stat(folder.c_str(), &status) != 0) {
            _reportUnsearched(folder, target, errno);
            return;
        }
        if (!isNamed && _outputIdentity && *_outputIdentity == idOf(status)) {
            _notes.push_back(fmt::format("{}: not searched: the output goes there", printable(folder)));
            ++_repeated;
            return;
        }
        if (!_searched.insert(idOf(status)).second) {
            ++_repeated;
            return;
        }
        NamesOfFolder content = namesOfFolder(folder);
        const std::string identity = identityOf(folder);
        const LinksOut linksOut = _linksOut(folder, content.names);
        for (const std::string& name : content.names) {
            const int error = _visit(joined(folder, name), name, identity, target, linksOut);
            content.error = content.error == 0 ? error : content.error;
        }
        if (content.error != 0) {
            _reportUnsearched(folder, target, content.error);
        }
    }

    /// Names of links that lead out of the folder that is searched, by their stems in lower case.
    using LinksOut = std::map<std::string, std::string>;

    LinksOut _linksOut(const std::string& folder, const std::vector<std::string>& names) const {
        LinksOut links;
        for (const std::string& name : names) {
            if (kindOf(name) && _leadsOut(joined(folder, name))) {
                links.emplace(StringHelper::toLower(std::string(stemOf(name))), name);
            }
        }
        return links;
    }

    bool _leadsOut(const std::string& path) const {
        struct stat status = {};
        if (_followsLinks || lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode) ||
            stat(path.c_str(), &status) != 0) {
            return false;
        }
        std::error_code error;
        const std::string end = fs::canonical(path, error).string();
        const std::string inside = joined(_root, "");
        return error || (end != _root && end.compare(0, inside.size(), inside) != 0);
    }

    /// Gives errno where the folder lets nobody see what the name is of, or 0.
    int _visit(const std::string& path, const std::string& name, const std::string& folderIdentity,
               const std::string& target, const LinksOut& linksOut) {
        struct stat status = {};
        if (lstat(path.c_str(), &status) != 0) {
            return errno == ENOENT ? 0 : errno; // it has gone meanwhile
        }
        const bool isLink = S_ISLNK(status.st_mode);
        if (stat(path.c_str(), &status) != 0) {
            if (errno != ENOENT && errno != ELOOP) { // no link to nowhere, nor in a circle
                _reportUnsearched(path, target, errno);
            }
            return 0;
        }
        const auto kind = kindOf(name);
        if (isLink && (kind || S_ISDIR(status.st_mode)) && _leadsOut(path)) {
            _notes.push_back(fmt::format("{}: not followed: {}", printable(path), kLeadsOut));
            return 0;
        }
        if (S_ISDIR(status.st_mode)) {
            _search(path, joined(target, name));
            return 0;
        }
        if (S_ISREG(status.st_mode) && (kind == Kind::Cfg || kind == Kind::Cff)) {
            const auto link = linksOut.find(StringHelper::toLower(std::string(stemOf(name))));
            const std::string problem = link == linksOut.end()
                                            ? ""
                                            : fmt::format("{}: not read: {} is a link, and {}", printable(path),
                                                          printable(link->second), kLeadsOut);
            _add({path, joined(target, std::string(stemOf(name))), problem, true}, folderIdentity, *kind);
        }
        return 0;
    }

    void _reportUnsearched(const std::string& folder, const std::string& target, int error) {
        _entries.push_back(
            {folder, target, fmt::format("{}: cannot be searched: {}", printable(folder), std::strerror(error))});
    }

    const bool _followsLinks;
    std::string _root; ///< the folder that is searched, without links
    std::vector<Entry> _entries;
    std::unordered_map<std::string, Place> _places; ///< by folder and name without extension
    std::set<FileId> _searched;
    std::optional<FileId> _outputIdentity; ///< of a folder that is only searched where it is named
    std::size_t _repeated = 0;             ///< files and folders met that had been taken before
    std::vector<std::string> _notes;
};

bool isFolder(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        // The folder that it is in lets nobody see it; what else fails is no word on what it is.
        constexpr std::array known = {ENOENT, ENOTDIR, EACCES, ELOOP, ENAMETOOLONG};
        if (std::find(known.begin(), known.end(), errno) == known.end()) {
            throw Failure(kRecordingProblem, fmt::format("{}: {}", printable(path), std::strerror(errno)));
        }
        return false;
    }
    return S_ISDIR(status.st_mode);
}

/// The folder's own name, also of "." and of a path that ends in a slash.
std::string folderName(const std::string& folder) {
    return fs::path(identityOf(folder)).filename().string();
}

} // namespace

Selection collectRecordings(const std::vector<std::string>& paths, bool followsLinks, const std::string& outputFolder) {
    Collector collector(followsLinks, outputFolder);
    for (const std::string& path : paths) {
        if (isFolder(path)) {
            collector.addFolder(path, paths.size() == 1 ? "" : folderName(path));
        } else {
            collector.addFile(path);
        }
    }
    return collector.take(paths.size() == 1 && !isFolder(paths.front()));
}
