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
    std::uint64_t bytes;      ///< as they are declared, unpacked
    bool isAmbiguous = false; ///< there is another file of this very name
};

/// A recording in an archive.
struct ArchivedRecording {
    std::string member; ///< name in the archive of the file that stands for it
    ReadFiles read;
    std::shared_ptr<const std::vector<ArchiveMember>> files; ///< all of its name, in any case
};

/// A .zip archive, whose files are unpacked into memory, each when it is asked for. It is opened when it is needed, by
/// each thread for itself, and closed once its recordings are read. May be used by several threads.
class Archive : public std::enable_shared_from_this<Archive> {
public:
    Archive(std::string path, const ArchiveLimits& limits);
    ~Archive();
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    Archive(Archive&&) = delete;
    Archive& operator=(Archive&&) = delete;

    const std::string& path() const { return _path; }

    /// The recordings in the order of their names: all, or the one that `inner` names a file of, or those in the folder
    /// of this name. Every `.cfg` is one, and every `.cff` that has none beside it; other archives in it are left
    /// alone. Throws a Failure for what is no archive, or where there is no such file or folder in it. Those that
    /// `isWanted` is not true of are left out.
    std::vector<ArchivedRecording> recordings(const std::string& inner = {},
                                              const std::function<bool(const std::string&)>& isWanted = {});

private:
    struct Handle; // of an open archive
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
