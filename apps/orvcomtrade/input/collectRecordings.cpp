#include "input/collectRecordings.h"

#include "StringHelper.h"
#include "input/isOutside.h"
#include "input/recordingName.h"
#include "input/standardInput.h"
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
#include <sys/stat.h>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace fs = std::filesystem;
using OrvComtradeLib::StringHelper;

namespace {

constexpr const char* kLeadsOutOfFolder = "it leads out of the folder that is searched; --follow-links follows it";

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
    if (kind && *kind != FileKind::Other) {
        return isNoRegularFile(path) ? printable(path) + ": not a file of a recording: it is no regular file" : "";
    }
    if (nameOf(path).find('.') == std::string_view::npos) {
        return fmt::format(
            "{}: not a file of a recording: the path has no extension; name the .cfg, .dat or .cff file, or a folder",
            printable(path));
    }
    return fmt::format("{}: not a file of a recording: the extension is not .cfg, .dat, .cff or .zip", printable(path));
}

struct NameInFolder {
    std::string text;
    unsigned char type = DT_UNKNOWN; ///< as the folder says: a look at what the name is of costs more than all else

    bool mayBeLink() const { return type == DT_LNK || type == DT_UNKNOWN; }
};

struct NamesOfFolder {
    std::vector<NameInFolder> names; ///< sorted
    int error = 0;
};

bool isMain(const std::string& name) {
    const auto kind = kindOf(name);
    return kind == FileKind::Cfg || kind == FileKind::Cff;
}

/// Those of regular files that are neither main files of recordings nor, with `hasArchives`, archives are left out.
NamesOfFolder namesOfFolder(const std::string& folder, bool hasArchives) {
    NamesOfFolder result;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), closedir);
    if (!stream) {
        result.error = errno;
        return result;
    }
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        NameInFolder name{entry->d_name, entry->d_type};
        const bool isOfInterest = isMain(name.text) || (hasArchives && isArchiveName(name.text));
        if (name.text != "." && name.text != ".." && (name.type != DT_REG || isOfInterest)) {
            result.names.push_back(std::move(name));
        }
        errno = 0;
    }
    result.error = errno;
    std::sort(result.names.begin(), result.names.end(),
              [](const NameInFolder& left, const NameInFolder& right) { return left.text < right.text; });
    return result;
}

using FileId = std::pair<dev_t, ino_t>;

FileId idOf(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

bool isFolderToSearch(const std::string& path) {
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

class Collector {
public:
    explicit Collector(const Search& wanted) : _wanted(wanted) {
        struct stat status = {};
        if (!wanted.outputFolder.empty() && stat(wanted.outputFolder.c_str(), &status) == 0) {
            _outputIdentity = idOf(status);
        }
    }

    void addFile(const std::string& path) {
        const auto kind = kindOf(nameOf(path));
        _add({path, std::string(stemOf(nameOf(path))), problemOfFile(path)}, identityOf(folderOf(path)),
             kind.value_or(FileKind::Other));
    }

    void addStandardInput() {
        if (!_places.try_emplace("-", Place{_entries.size(), FileKind::Cff}).second) {
            throw Failure(kWrongUsage, "- can be given only once: standard input can be read only once");
        }
        Entry entry{"-", "stdin"};
        entry.read = [most = _wanted.mostOfInput] {
            HeldFiles files;
            files.name = kStandardInput;
            files.isStream = true;
            files.cfg = standardInput(most);
            return files;
        };
        _entries.push_back(std::move(entry));
    }

    /// `target` leads the targets of what is in it.
    void addArchive(const std::string& path, const PlaceInArchive& place, const std::string& target) {
        const std::string identity =
            joined(identityOf(folderOf(place.archive)), std::string(nameOf(place.archive))) + "/" + place.inner;
        if (!_places.try_emplace(identity, Place{_entries.size(), FileKind::Other}).second) {
            ++_repeated;
            return;
        }
        Entry entry{path, target};
        entry.archive = place.archive;
        entry.inner = place.inner;
        _entries.push_back(std::move(entry));
    }

    /// `target` leads the targets of what is found.
    void addFolder(const std::string& folder, const std::string& target) {
        const std::size_t before = _entries.size();
        const std::size_t known = _repeated;
        _root = identityOf(folder);
        _search(folder, target, true);
        if (_entries.size() == before && _repeated == known) {
            Entry none{folder, target, fmt::format("{}: no recording in this folder", printable(folder))};
            none.isEmptyFolder = true;
            _entries.push_back(std::move(none));
        }
    }

    EntryList take(bool single) { return {std::move(_entries), single, std::move(_notes)}; }

private:
    struct Place {
        std::size_t entry;
        FileKind kind;
    };

    void _add(Entry entry, const std::string& folderIdentity, FileKind kind) {
        // A file that is none of a recording stands for itself alone.
        const bool alone = kind == FileKind::Other && !kindOf(nameOf(entry.path));
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
        NamesOfFolder content = namesOfFolder(folder, _wanted.entersArchives);
        const std::string identity = identityOf(folder);
        const LinksOut linksOut = _linksOut(folder, content.names);
        _makeRoomFor(content.names);
        for (const NameInFolder& name : content.names) {
            const int error = _visit(joined(folder, name.text), name.text, identity, target, linksOut);
            content.error = content.error == 0 ? error : content.error;
        }
        if (content.error != 0) {
            _reportUnsearched(folder, target, content.error);
        }
    }

    /// Names of links that lead out of the folder that is searched, by their stems in lower case.
    using LinksOut = std::map<std::string, std::string>;

    LinksOut _linksOut(const std::string& folder, const std::vector<NameInFolder>& names) const {
        LinksOut links;
        for (const NameInFolder& name : names) {
            if (name.mayBeLink() && kindOf(name.text) && _leadsOut(joined(folder, name.text))) {
                links.emplace(StringHelper::toLower(std::string(stemOf(name.text))), name.text);
            }
        }
        return links;
    }

    /// At once where there are many: room that grows with each of them takes up to three times the memory.
    void _makeRoomFor(const std::vector<NameInFolder>& names) {
        const auto count = static_cast<std::size_t>(
            std::count_if(names.begin(), names.end(), [](const NameInFolder& name) { return isMain(name.text); }));
        if (_entries.size() + count > 2 * _entries.capacity()) {
            _entries.reserve(_entries.size() + count);
        }
    }

    bool _leadsOut(const std::string& path) const {
        struct stat status = {};
        if (_wanted.followsLinks || lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode) ||
            stat(path.c_str(), &status) != 0) {
            return false;
        }
        return isOutside(path, _root);
    }

    /// Gives errno where the folder lets nobody see what the name is of, or 0.
    int _visit(const std::string& path, const std::string& name, const std::string& folderIdentity,
               const std::string& target, const LinksOut& linksOut) {
        struct stat status = {};
        if (lstat(path.c_str(), &status) != 0) {
            return errno == ENOENT ? 0 : errno; // it has gone meanwhile
        }
        const bool isLink = S_ISLNK(status.st_mode);
        if (isLink && stat(path.c_str(), &status) != 0) {
            if (errno != ENOENT && errno != ELOOP) { // no link to nowhere, nor in a circle
                _reportUnsearched(path, target, errno);
            }
            return 0;
        }
        const auto kind = kindOf(name);
        const bool isWanted = kind || S_ISDIR(status.st_mode) || (_wanted.entersArchives && isArchiveName(name));
        if (isLink && isWanted && _leadsOut(path)) {
            _notes.push_back(fmt::format("{}: not followed: {}", printable(path), kLeadsOutOfFolder));
            return 0;
        }
        if (S_ISDIR(status.st_mode)) {
            _search(path, joined(target, name));
            return 0;
        }
        if (S_ISREG(status.st_mode) && isArchiveName(name) && _wanted.entersArchives) {
            addArchive(path, {path, ""}, joined(target, std::string(stemOf(name))));
        }
        if (S_ISREG(status.st_mode) && isMain(name)) {
            const auto link = linksOut.find(StringHelper::toLower(std::string(stemOf(name))));
            const std::string problem = link == linksOut.end()
                                            ? ""
                                            : fmt::format("{}: not read: {} is a link, and {}", printable(path),
                                                          printable(link->second), kLeadsOutOfFolder);
            _add({path, joined(target, std::string(stemOf(name))), problem, true}, folderIdentity, *kind);
        }
        return 0;
    }

    void _reportUnsearched(const std::string& folder, const std::string& target, int error) {
        _entries.push_back(
            {folder, target, fmt::format("{}: cannot be searched: {}", printable(folder), std::strerror(error))});
    }

    const Search& _wanted;
    std::string _root; ///< the folder that is searched, without links
    std::vector<Entry> _entries;
    std::unordered_map<std::string, Place> _places; ///< by folder and name without extension
    std::set<FileId> _searched;
    std::optional<FileId> _outputIdentity; ///< of a folder that is only searched where it is named
    std::size_t _repeated = 0;             ///< files and folders met that had been taken before
    std::vector<std::string> _notes;
};

/// The folder's own name, also of "." and of a path that ends in a slash.
std::string folderName(const std::string& folder) {
    return fs::path(identityOf(folder)).filename().string();
}

} // namespace

std::optional<PlaceInArchive> placeInArchive(const std::string& path) {
    for (std::size_t end = std::min(path.find('/', 1), path.size());;
         end = std::min(path.find('/', end + 1), path.size())) {
        const std::string beginning = path.substr(0, end);
        if (isArchiveName(nameOf(beginning)) && !isFolderToSearch(beginning)) {
            const std::size_t inner = std::min(path.find_first_not_of('/', end), path.size());
            return PlaceInArchive{beginning, path.substr(inner)};
        }
        if (end == path.size()) {
            return std::nullopt;
        }
    }
}

EntryList collectRecordings(const std::vector<std::string>& paths, const Search& search) {
    Collector collector(search);
    const bool isOne = paths.size() == 1;
    bool isSingle = isOne;
    for (const std::string& path : paths) {
        if (path == "-") {
            collector.addStandardInput();
        } else if (const auto place = placeInArchive(path)) {
            const bool isFile = kindOf(nameOf(place->inner)).has_value();
            const std::string target(stemOf(nameOf(place->archive)));
            collector.addArchive(path, *place, isOne ? "" : target);
            isSingle = isSingle && isFile;
        } else if (isFolderToSearch(path)) {
            collector.addFolder(path, isOne ? "" : folderName(path));
            isSingle = false;
        } else {
            collector.addFile(path);
        }
    }
    return collector.take(isSingle);
}
