#pragma once

#include "input/ArchiveLimits.h"
#include "input/HeldFiles.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// A file in an archive.
struct ArchiveMember {
    std::uint64_t index;
    std::string name;
    std::uint64_t bytes;      ///< declared length, unpacked
    bool isAmbiguous = false; ///< another file has exactly this name
};

/// A recording in an archive.
struct ArchivedRecording {
    std::string member; ///< name in the archive of its main file
    ReadFiles read;
    std::shared_ptr<const std::vector<ArchiveMember>> files; ///< all files of its name, in upper or lower case
};

/// A .zip archive. Each file is unpacked into memory when it is needed. Each thread opens the archive for itself when
/// it needs it; it is closed once its recordings are read. Several threads may use an object.
class Archive : public std::enable_shared_from_this<Archive> {
public:
    Archive(std::string path, const ArchiveLimits& limits);
    ~Archive();
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    Archive(Archive&&) = delete;
    Archive& operator=(Archive&&) = delete;

    const std::string& path() const { return _path; }

    /// The recordings in the order of their names: all of them, or only the one that has the file `inner`, or those in
    /// the folder `inner`. Every `.cfg` is a recording, and so is every `.cff` without a `.cfg` of its name. Archives
    /// in the archive are ignored. Recordings for which `isWanted` is false are left out. Throws a Failure if the file
    /// is not an archive, or if there is no such file or folder in it.
    std::vector<ArchivedRecording> recordings(const std::string& inner = {},
                                              const std::function<bool(const std::string&)>& isWanted = {});

private:
    struct Handle; // an open archive
    class Lease;

    std::unique_ptr<Handle> _open() const;
    std::unique_ptr<Handle> _take();
    void _giveBack(std::unique_ptr<Handle> handle);
    std::vector<ArchiveMember> _members(const Handle& handle) const;
    HeldFiles _read(const ArchiveMember& main, const std::vector<ArchiveMember>& members);
    std::string _unpack(const Handle& handle, const ArchiveMember& member) const;
    [[noreturn]] void _fail(const std::string& member, const std::string& reason) const;

    const std::string _path;
    const ArchiveLimits _limits;
    std::vector<std::unique_ptr<Handle>> _idle;
    std::size_t _left = 0; ///< recordings that are still to be read
    std::mutex _mutex;
};
