#include "input/Archive.h"

#include "StringHelper.h"
#include "input/declaredMembers.h"
#include "input/recordingName.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <map>
#include <new>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <utility>
#include <zip.h>

namespace {

constexpr std::size_t kPieceLength = 64UL * 1024;

std::string lowerCase(std::string_view text) {
    return OrvComtradeLib::StringHelper::toLower(std::string(text));
}

/// libzip's words for an error code. Throws `std::bad_alloc` where there is no memory for more.
std::string wordsFor(int code, int systemCode) {
    constexpr int noMemoryOfZlib = -4; // Z_MEM_ERROR
    if (code == ZIP_ER_MEMORY || (code == ZIP_ER_ZLIB && systemCode == noMemoryOfZlib)) {
        throw std::bad_alloc();
    }
    zip_error_t error;
    zip_error_init(&error);
    zip_error_set(&error, code, systemCode);
    std::string words = zip_error_strerror(&error);
    zip_error_fini(&error);
    return words;
}

std::string wordsOf(zip_error_t* error) {
    return wordsFor(zip_error_code_zip(error), zip_error_code_system(error));
}

/// The same for reading a file in an archive, where libzip takes every refusal of the system for the end of the
/// archive.
std::string wordsOfReading(zip_error_t* error, int systemCode) {
    const bool isRefused = zip_error_code_zip(error) == ZIP_ER_EOF && systemCode != 0;
    return isRefused ? std::string(std::strerror(systemCode)) : wordsOf(error);
}

struct FileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

/// How far a file is from being the companion of a configuration: the same stem comes first, then an extension in
/// lower, in upper, in any case.
std::pair<bool, int> distanceOf(const std::string& name, std::string_view stem, const char* extension) {
    const std::string its(extensionOf(name));
    const bool isUpper =
        std::none_of(its.begin(), its.end(), [](char letter) { return letter >= 'a' && letter <= 'z'; });
    return {stemOf(name) != stem, its == extension ? 0 : isUpper ? 1 : 2};
}

/// Of the files of one name, in any case: null where there is none of this extension.
const ArchiveMember* companionOf(const ArchiveMember& main, const std::vector<ArchiveMember>& members,
                                 const char* extension) {
    const ArchiveMember* best = nullptr;
    const auto distance = [&](const ArchiveMember& member) {
        return distanceOf(member.name, stemOf(main.name), extension);
    };
    for (const ArchiveMember& member : members) {
        const bool isOfKind = lowerCase(extensionOf(member.name)) == extension;
        if (isOfKind && (best == nullptr || distance(member) < distance(*best))) {
            best = &member;
        }
    }
    return best;
}

/// Every `.cfg`, or where there is none every `.cff`: all, or the one that is meant by `inner`, which names any file of
/// it, or those in the folder `inner`.
std::vector<ArchiveMember> mainsOf(const std::vector<ArchiveMember>& members, const std::string& inner) {
    std::vector<ArchiveMember> mains;
    for (const FileKind kind : {FileKind::Cfg, FileKind::Cff}) {
        if (mains.empty()) {
            std::copy_if(members.begin(), members.end(), std::back_inserter(mains),
                         [kind](const ArchiveMember& member) { return kindOf(member.name) == kind; });
        }
    }
    const auto isInner = [&inner](const ArchiveMember& member) { return member.name == inner; };
    const auto named = std::find_if(mains.begin(), mains.end(), isInner);
    if (named != mains.end()) {
        return {*named};
    }
    if (std::any_of(members.begin(), members.end(), isInner)) {
        mains.resize(std::min<std::size_t>(mains.size(), 1));
        return mains;
    }
    const std::string folder = inner.empty() || inner.back() == '/' ? inner : inner + '/';
    const auto isElsewhere = [&folder](const ArchiveMember& member) {
        return member.name.compare(0, folder.size(), folder) != 0;
    };
    mains.erase(std::remove_if(mains.begin(), mains.end(), isElsewhere), mains.end());
    return mains;
}

} // namespace

struct Archive::Handle {
    explicit Handle(zip_t* opened) : zip(opened) {}
    ~Handle() { zip_discard(zip); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&&) = delete;
    Handle& operator=(Handle&&) = delete;

    zip_t* zip;
};

/// An open archive for as long as it lives, for one recording.
class Archive::Lease {
public:
    explicit Lease(Archive& archive) : _archive(archive), _handle(archive._take()) {}
    ~Lease() { _archive._giveBack(std::move(_handle)); }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    Lease(Lease&&) = delete;
    Lease& operator=(Lease&&) = delete;

    const Handle& operator*() const { return *_handle; }

private:
    Archive& _archive;
    std::unique_ptr<Handle> _handle;
};

Archive::Archive(std::string path, const ArchiveLimits& limits) : _path(std::move(path)), _limits(limits) {}

Archive::~Archive() = default;

void Archive::_fail(const std::string& member, const std::string& reason) const {
    const std::string place = member.empty() ? _path : _path + "/" + member;
    throw Failure(kRecordingProblem, printable(place) + ": " + printable(reason));
}

std::unique_ptr<Archive::Handle> Archive::_open() const {
    struct stat status = {};
    if (stat(_path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        _fail({}, "not an archive: it is no regular file");
    }
    if (const std::uint64_t declared = declaredMembers(_path); declared > _limits.members) {
        _fail({},
              fmt::format("it declares {} files, more than the limit members allows ({})", declared, _limits.members));
    }
    int code = 0;
    errno = 0;
    zip_t* const zip = zip_open(_path.c_str(), ZIP_RDONLY, &code);
    if (zip == nullptr) {
        const int systemCode = errno;
        if (systemCode == ENOMEM) { // which libzip takes for no archive where it looks for the list of files
            throw std::bad_alloc();
        }
        _fail({}, code == ZIP_ER_NOENT ? std::string(std::strerror(ENOENT)) : wordsFor(code, systemCode));
    }
    return std::make_unique<Handle>(zip);
}

std::unique_ptr<Archive::Handle> Archive::_take() {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (!_idle.empty()) {
            std::unique_ptr<Handle> handle = std::move(_idle.back());
            _idle.pop_back();
            return handle;
        }
    }
    return _open();
}

void Archive::_giveBack(std::unique_ptr<Handle> handle) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _left -= _left > 0 ? 1 : 0;
    if (_left > 0) {
        _idle.push_back(std::move(handle));
    } else {
        _idle.clear();
    }
}

/// Those that may belong to a recording, by name, each once.
std::vector<ArchiveMember> Archive::_members(const Handle& handle) const {
    std::vector<ArchiveMember> members;
    const zip_int64_t count = zip_get_num_entries(handle.zip, 0);
    for (zip_uint64_t index = 0; index < static_cast<zip_uint64_t>(std::max<zip_int64_t>(count, 0)); ++index) {
        const char* const name = zip_get_name(handle.zip, index, ZIP_FL_ENC_RAW);
        if (name != nullptr && kindOf(name)) {
            zip_stat_t status;
            zip_stat_init(&status);
            zip_stat_index(handle.zip, index, ZIP_FL_ENC_RAW, &status);
            members.push_back({index, name, (status.valid & ZIP_STAT_SIZE) != 0 ? status.size : 0});
        }
    }
    std::stable_sort(members.begin(), members.end(),
                     [](const ArchiveMember& left, const ArchiveMember& right) { return left.name < right.name; });
    std::vector<ArchiveMember> once;
    for (ArchiveMember& member : members) {
        if (!once.empty() && once.back().name == member.name) {
            once.back().isAmbiguous = true;
        } else {
            once.push_back(std::move(member));
        }
    }
    return once;
}

std::vector<ArchivedRecording> Archive::recordings(const std::string& inner,
                                                   const std::function<bool(const std::string&)>& isWanted) {
    const std::unique_ptr<Handle> handle = _open();
    std::map<std::string, std::vector<ArchiveMember>> groups; // by the name without extension, in lower case
    for (ArchiveMember& member : _members(*handle)) {
        groups[lowerCase(stemOf(member.name))].push_back(std::move(member));
    }
    std::vector<ArchivedRecording> found;
    bool isEmpty = true;
    for (auto& [stem, group] : groups) {
        const auto members = std::make_shared<const std::vector<ArchiveMember>>(std::move(group));
        for (const ArchiveMember& main : mainsOf(*members, inner)) {
            isEmpty = false;
            if (!isWanted || isWanted(main.name)) {
                const auto read = [self = shared_from_this(), main = main, members] {
                    return self->_read(main, *members);
                };
                found.push_back({main.name, read, members});
            }
        }
    }
    if (isEmpty) {
        _fail(inner, inner.empty() ? "no recording in this archive" : "no recording of this name in the archive");
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    _left += found.size();
    return found;
}

HeldFiles Archive::_read(const ArchiveMember& main, const std::vector<ArchiveMember>& members) {
    const Lease handle(*this);
    const auto companion = [&](const char* extension) -> std::optional<std::string> {
        const ArchiveMember* const member = companionOf(main, members, extension);
        return member == nullptr ? std::nullopt : std::optional(_unpack(*handle, *member));
    };
    HeldFiles held;
    held.name = _path + "/" + std::string(stemOf(main.name));
    held.cfg = _unpack(*handle, main);
    if (kindOf(main.name) == FileKind::Cfg) {
        held.dat = companion(".dat");
        held.hdr = companion(".hdr").value_or("");
        held.inf = companion(".inf").value_or("");
    }
    return held;
}

std::string Archive::_unpack(const Handle& handle, const ArchiveMember& member) const {
    if (member.isAmbiguous) {
        _fail(member.name, "the archive has more than one file of this name");
    }
    zip_stat_t status;
    zip_stat_init(&status);
    const bool isKnown = zip_stat_index(handle.zip, member.index, ZIP_FL_ENC_RAW, &status) == 0;
    if (!isKnown || status.name != member.name) {
        _fail(member.name, "the archive has changed meanwhile");
    }
    if ((status.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && status.encryption_method != ZIP_EM_NONE) {
        _fail(member.name, "it is encrypted: unpack the archive first");
    }
    const std::uint64_t declared = (status.valid & ZIP_STAT_SIZE) != 0 ? status.size : 0;
    if (declared > _limits.memberBytes) {
        _fail(member.name, fmt::format("{} bytes unpacked, more than the limit member-bytes allows ({})", declared,
                                       _limits.memberBytes));
    }
    const std::unique_ptr<zip_file_t, FileCloser> file(zip_fopen_index(handle.zip, member.index, 0));
    if (!file) {
        _fail(member.name, "cannot be unpacked: " + wordsOf(zip_get_error(handle.zip)));
    }
    std::string bytes; // grows with what comes, not by what is declared
    std::array<char, kPieceLength> piece{};
    for (;;) {
        errno = 0;
        const zip_int64_t count = zip_fread(file.get(), piece.data(), piece.size());
        if (count < 0) {
            const int systemCode = errno;
            _fail(member.name, "cannot be unpacked: " + wordsOfReading(zip_file_get_error(file.get()), systemCode));
        }
        if (count == 0) {
            break;
        }
        bytes.append(piece.data(), static_cast<std::size_t>(count));
        if (bytes.size() > declared) {
            _fail(member.name, fmt::format("unpacks to more than the {} bytes declared", declared));
        }
    }
    if (bytes.size() != declared) {
        _fail(member.name, fmt::format("unpacks to {} bytes, {} declared", bytes.size(), declared));
    }
    return bytes;
}
