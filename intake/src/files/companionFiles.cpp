#include "files/companionFiles.h"

#include "base/characters.h"
#include "files/FileError.h"
#include "files/FileName.h"
#include "files/folderNames.h"
#include "files/nearMiss.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

using FileId = std::pair<dev_t, ino_t>;

/// A regular file, or what leads to one.
bool isFile(const std::string& path, FileId* id = nullptr) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        constexpr std::array none = {ENOENT, ENOTDIR, EACCES, ELOOP, ENAMETOOLONG};
        if (std::find(none.begin(), none.end(), errno) == none.end()) {
            throwFileError(errno, path); // it may be there
        }
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        return false;
    }
    if (id != nullptr) {
        *id = {status.st_dev, status.st_ino};
    }
    return true;
}

/// Each file once: two names of one file leave no doubt, as on a disk that ignores the case of letters.
std::vector<std::string> filesOf(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    std::vector<FileId> ids;
    for (const std::string& path : paths) {
        FileId id;
        if (isFile(path, &id) && std::find(ids.begin(), ids.end(), id) == ids.end()) {
            files.push_back(path);
            ids.push_back(id);
        }
    }
    return files;
}

/// Finds the files beside one.
class Search {
public:
    Search(const std::string& path, const Folders* folders, Findings& findings)
        : _path(path), _name(FileName::of(path)), _isThere(isFile(path)), _folders(folders), _findings(findings) {}

    bool isThere() const { return _isThere; }
    bool isOfKind(const std::string& extension) const { return lowerCase(_name.extension) == extension; }

    /// Under one of the names that are usual, or none.
    std::string usual(const std::string& extension) {
        if (_isThere && isOfKind(extension)) {
            return _path;
        }
        const std::string upper = upperCase(extension);
        const std::string capital = upper.substr(0, 2) + extension.substr(2);
        return _best(filesOf({_name.with(extension), _name.with(upper), _name.with(capital)}));
    }

    /// Under any name that differs in case, or none.
    std::string unusual(const std::string& extension) {
        _list();
        const std::string wanted = lowerCase(_name.stem) + extension;
        std::vector<std::string> same;
        std::vector<std::string> others;
        for (const FileName& name : _listed) {
            if (lowerCase(name.name()) != wanted) {
                continue;
            }
            if (name.stem == _name.stem) {
                same.push_back(_name.folder + name.name());
            } else if (!_isOfAnother(name.stem)) {
                others.push_back(_name.folder + name.name());
            }
        }
        const std::string best = _best(filesOf(same));
        return best.empty() ? _best(filesOf(others)) : best;
    }

    std::string any(const std::string& extension) {
        const std::string path = usual(extension);
        return path.empty() ? unusual(extension) : path;
    }

    std::string nearMisses(const std::string& extension) {
        _list();
        constexpr std::size_t most = 3;
        const std::string stem = lowerCase(_name.stem);
        std::string text;
        std::size_t count = 0;
        for (const FileName& other : _listed) {
            if (lowerCase(other.name()) == stem + extension && !isFile(_name.folder + other.name())) {
                return escaped(other.name()) + ", which is not a regular file"; // a pipe, or a link to nowhere
            }
            if (!stem.empty() && isNearMiss(lowerCase(other.name()), stem, extension) && ++count <= most) {
                text += (count == 1 ? "" : ", ") + other.name();
            }
        }
        if (count == 0) {
            return "none" + (_listingError.empty() ? "" : " in a folder that cannot be listed (" + _listingError + ")");
        }
        return escaped(text, 200) + (count > most ? ", ..." : "");
    }

private:
    void _list() {
        if (std::exchange(_isListed, true)) {
            return;
        }
        try {
            for (const std::string& name : folderNames(_name.folder, originalStem(_name.stem), _folders)) {
                _listed.push_back(FileName::of(name));
            }
        } catch (const FileError& error) {
            if (error.code() != std::errc::permission_denied) {
                throw; // the names would be there another time
            }
            _listingError = error.code().message();
        }
    }

    /// Whether a stem has a file of the same kind as the one sought for.
    bool _isOfAnother(const std::string& stem) const {
        return _isThere && std::any_of(_listed.begin(), _listed.end(), [&](const FileName& name) {
                   return name.stem == stem && lowerCase(name.extension) == lowerCase(_name.extension);
               });
    }

    std::string _best(const std::vector<std::string>& files) {
        if (files.size() > 1) {
            std::string names;
            for (const std::string& file : files) {
                names += (names.empty() ? "" : ", ") + FileName::of(file).name();
            }
            _findings.add(Kind::AmbiguousCompanion, {files.front(), 0, ""}, {escaped(names, 200), "the first is read"});
        }
        return files.empty() ? "" : files.front();
    }

    std::string _path;
    FileName _name;
    bool _isThere;
    const Folders* _folders;
    Findings& _findings;
    std::vector<FileName> _listed; ///< names that begin like the one sought for
    bool _isListed = false;
    std::string _listingError; ///< or empty
};

/// A file that says what the data are, and its extension.
struct Wanted {
    std::string CompanionFiles::*file;
    const char* extension;
};

} // namespace

CompanionFiles findCompanions(const std::string& path, Findings& findings, const Folders* folders) {
    CompanionFiles files;
    Search search(path, folders, findings);
    std::array<Wanted, 2> wanted = {Wanted{&CompanionFiles::cfg, ".cfg"}, Wanted{&CompanionFiles::cff, ".cff"}};
    if (search.isOfKind(".cff")) {
        std::swap(wanted[0], wanted[1]);
    }
    for (const auto find : {&Search::usual, &Search::unusual}) {
        for (const Wanted& one : wanted) {
            if (files.cfg.empty() && files.cff.empty()) {
                files.*one.file = (search.*find)(one.extension);
            }
        }
    }
    if (search.isThere() && search.isOfKind(".dat")) {
        files.dat = path;
    }
    if (files.cfg.empty()) {
        files.nearMisses = files.cff.empty() ? search.nearMisses(".cfg") : "";
        return files;
    }
    Search beside(files.cfg, folders, findings);
    if (files.dat.empty()) {
        files.dat = beside.any(".dat");
    }
    if (files.dat.empty()) {
        files.nearMisses = beside.nearMisses(".dat");
    }
    files.hdr = beside.usual(".hdr");
    files.inf = beside.usual(".inf");
    return files;
}

} // namespace OrvComtradeIntake
