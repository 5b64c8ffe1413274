#include "fleet/RecordingWalk.h"

#include "StringHelper.h"
#include "input/Archive.h"
#include "input/fileTime.h"
#include "input/isOutside.h"
#include "input/recordingName.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace fs = std::filesystem;
using OrvComtradeLib::StringHelper;

namespace {

constexpr const char* kLeadsOutOfArchive = "it leads out of the archive; --follow-links follows it";

struct Name {
    std::string text;
    bool isFolder = false;
    bool isArchive = false;
    bool isLink = false;
};

/// What the system calls it: the archive itself is the current folder.
std::string onDisk(const std::string& path) {
    return path.empty() ? "." : "./" + path;
}

/// The recordings of a folder by their main files, each with the positions of the files that have its name.
class FolderRecordings {
public:
    explicit FolderRecordings(const std::vector<Name>& names) : _names(names) {
        _addMains(FileKind::Cfg);
        _addMains(FileKind::Cff);
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (!names[i].isFolder && !names[i].isArchive) {
                _assign(i);
            }
        }
    }

    /// Of the name at this position; null where that is not the main file of a recording.
    const std::vector<std::size_t>* filesOf(std::size_t main) const {
        const auto recording = _files.find(main);
        return recording == _files.end() ? nullptr : &recording->second;
    }

private:
    void _addMains(FileKind kind) {
        for (std::size_t i = 0; i < _names.size(); ++i) {
            const std::string& name = _names[i].text;
            if (!_names[i].isFolder && kindOf(name) == kind && _mains.emplace(stemOf(name), i).second) {
                _files[i];
                _byLowerCase.emplace(StringHelper::toLower(std::string(stemOf(name))), i);
            }
        }
    }

    /// To the recording of its very name, else to those of its name in another case.
    void _assign(std::size_t file) {
        const std::string stem(stemOf(_names[file].text));
        const auto own = _mains.find(stem);
        if (own != _mains.end()) {
            _files[own->second].push_back(file);
            return;
        }
        const auto range = _byLowerCase.equal_range(StringHelper::toLower(stem));
        for (auto other = range.first; other != range.second; ++other) {
            _files[other->second].push_back(file);
        }
    }

    const std::vector<Name>& _names;
    std::map<std::string, std::size_t> _mains;            ///< by stem
    std::multimap<std::string, std::size_t> _byLowerCase; ///< the same by stem in lower case
    std::map<std::size_t, std::vector<std::size_t>> _files;
};

class Walk {
public:
    explicit Walk(const WalkOptions& options) : _options(options), _root(fs::canonical(".").string()) {}

    void visit(const std::string& folder) {
        if (_options.followsLinks && !_isNew(folder)) {
            return;
        }
        const std::vector<Name> names = _namesIn(folder);
        const FolderRecordings recordings(names);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string path = joined(folder, names[i].text);
            if (names[i].isFolder) {
                _enter(path, names[i]);
            } else if (names[i].isArchive) {
                _enterArchive(path, names[i]);
            } else if (const std::vector<std::size_t>* const files = recordings.filesOf(i)) {
                if (_options.isWanted(path)) {
                    _report(folder, path, names, *files);
                }
            }
        }
    }

private:
    /// Links may lead to a folder twice.
    bool _isNew(const std::string& folder) {
        struct stat status = {};
        return stat(onDisk(folder).c_str(), &status) != 0 || _visited.insert({status.st_dev, status.st_ino}).second;
    }

    /// Sorted.
    std::vector<Name> _namesIn(const std::string& folder) {
        std::vector<Name> names;
        const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(onDisk(folder).c_str()), closedir);
        int error = stream ? 0 : errno;
        while (error == 0) {
            errno = 0;
            const dirent* const entry = readdir(stream.get()); // NOLINT(concurrency-mt-unsafe): a stream of its own
            if (entry == nullptr) {
                error = errno;
                break;
            }
            _add(*entry, folder, names);
        }
        if (error != 0) {
            _failToSearch(folder, error);
        }
        std::sort(names.begin(), names.end(),
                  [](const Name& left, const Name& right) { return left.text < right.text; });
        return names;
    }

    void _add(const dirent& entry, const std::string& folder, std::vector<Name>& names) const {
        Name name;
        name.text = entry.d_name;
        if (name.text == "." || name.text == "..") {
            return;
        }
        name.isFolder = entry.d_type == DT_DIR;
        bool isRegular = entry.d_type == DT_REG;
        if (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) {
            struct stat status = {};
            const std::string path = onDisk(joined(folder, name.text));
            name.isLink = lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
            if (stat(path.c_str(), &status) != 0) {
                return; // it has gone meanwhile, or leads nowhere
            }
            name.isFolder = S_ISDIR(status.st_mode);
            isRegular = S_ISREG(status.st_mode);
        }
        name.isArchive = isRegular && _options.entersArchives && isArchiveName(name.text);
        if (name.isFolder || name.isArchive || (isRegular && kindOf(name.text))) {
            names.push_back(std::move(name));
        }
    }

    void _failToSearch(const std::string& folder, int error) {
        const std::string sentence =
            fmt::format("{}: cannot be searched: {}", printable(folder.empty() ? _root : folder), std::strerror(error));
        if (folder.empty() || (error != EACCES && error != EPERM && error != ENOENT)) {
            throw Failure(kRecordingProblem, sentence);
        }
        if (error != ENOENT && _options.isWanted(folder)) { // else it has gone meanwhile
            _options.onRecording({folder, {}, sentence, {}});
        }
    }

    void _enter(const std::string& path, const Name& name) {
        if (!name.isLink) {
            visit(path);
        } else if (_leadsOut(path)) {
            if (_options.followsLinks) {
                visit(path);
            } else {
                _options.onNote(fmt::format("{}: not followed: {}", printable(path), kLeadsOutOfArchive));
            }
        }
    }

    /// Names what is in it without unpacking anything. One that can't be opened is a recording with a problem.
    void _enterArchive(const std::string& path, const Name& name) {
        struct stat status = {};
        if (name.isLink && !_options.followsLinks && _leadsOut(path)) {
            _options.onNote(fmt::format("{}: not followed: {}", printable(path), kLeadsOutOfArchive));
            return;
        }
        if (stat(onDisk(path).c_str(), &status) != 0) {
            return; // it has gone meanwhile
        }
        try {
            _reportArchived(path, modifiedAt(status));
        } catch (const Failure& failure) {
            if (_options.isWanted(path)) {
                const FileState file{name.text, static_cast<std::uint64_t>(status.st_size), modifiedAt(status)};
                _options.onRecording({path, {file}, failure.what(), {}});
            }
        }
    }

    void _reportArchived(const std::string& path, std::int64_t modified) {
        std::vector<ArchivedRecording> recordings =
            std::make_shared<Archive>(path, _options.limits)->recordings({}, [&](const std::string& member) {
                return _options.isWanted(joined(path, member));
            });
        std::sort(recordings.begin(), recordings.end(),
                  [](const ArchivedRecording& left, const ArchivedRecording& right) {
                      return isBeforeInWalk(left.member, right.member);
                  });
        for (ArchivedRecording& recording : recordings) {
            FoundRecording found{joined(path, recording.member), {}, {}, std::move(recording.read)};
            for (const ArchiveMember& file : *recording.files) {
                found.files.push_back({std::string(nameOf(file.name)), file.bytes, modified});
            }
            _options.onRecording(std::move(found));
        }
    }

    bool _leadsOut(const std::string& path) const { return isOutside(onDisk(path), _root); }

    void _report(const std::string& folder, const std::string& path, const std::vector<Name>& names,
                 const std::vector<std::size_t>& files) {
        FoundRecording found{path, {}, {}, {}};
        for (const std::size_t file : files) {
            const std::string filePath = joined(folder, names[file].text);
            if (names[file].isLink && !_options.followsLinks && _leadsOut(filePath)) {
                found.problem = fmt::format("{}: not read: {} is a link, and {}", printable(path),
                                            printable(names[file].text), kLeadsOutOfArchive);
            }
            struct stat status = {};
            if (stat(onDisk(filePath).c_str(), &status) == 0) {
                found.files.push_back(
                    {names[file].text, static_cast<std::uint64_t>(status.st_size), modifiedAt(status)});
            }
        }
        if (!found.files.empty()) { // else it has gone meanwhile
            _options.onRecording(std::move(found));
        }
    }

    const WalkOptions& _options;
    const std::string _root;
    std::set<std::pair<dev_t, ino_t>> _visited; ///< only where links are followed
};

} // namespace

bool isBeforeInWalk(const std::string& left, const std::string& right) {
    const auto rank = [](char byte) { return byte == '/' ? 0 : static_cast<unsigned char>(byte) + 1; };
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [&](char one, char other) { return rank(one) < rank(other); });
}

void walkRecordings(const WalkOptions& options) {
    Walk(options).visit("");
}
