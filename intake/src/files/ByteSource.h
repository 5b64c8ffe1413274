#pragma once

#include <OrvComtradeIntake/Finding.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Bytes of a recording, wherever they are: a file, a part of one, or memory. A value; copies share the open file,
/// which is opened once and used to the end. May be read from several threads.
class ByteSource {
public:
    /// Opens a regular file, without waiting for a pipe or a device that has its name. Throws a FileError (EISDIR for
    /// a folder, ENOTSUP for what else is no regular file).
    static ByteSource ofFile(const std::string& path);

    /// Bytes that outlive the source, under a name for findings.
    static ByteSource ofMemory(std::string_view bytes, const std::string& name);

    /// Bytes that the source owns. `offset` is where they come from in the file of that name, for findings, and `step`
    /// how many bytes there each of them is; 0: all stand there, in another form.
    static ByteSource ofText(std::string bytes, const std::string& name, std::uint64_t offset, std::uint64_t step = 0);

    /// The bytes from `position` on, `length` of them at most.
    ByteSource part(std::uint64_t position, std::uint64_t length) const;

    std::uint64_t length() const { return _length; }
    const std::string& name() const { return _name; } ///< path of the file, or the name given to memory

    /// Copies up to `most` bytes from `position` on; fewer only at the end. Throws a FileError, also where the file is
    /// no longer as it was when it was opened: what is read is of one state of it.
    std::size_t read(std::uint64_t position, char* into, std::size_t most) const;

    /// All bytes. Throws a FileError.
    std::string all() const;

    /// The same bytes, which begin with that line of the file.
    ByteSource withFirstLine(std::size_t line) const;

    /// Throws a FileError if the file has changed since it was opened: for those who read it by `pathOfWholeFile`.
    void requireUnchanged() const;

    /// Byte offset in the file of a byte of the source, for findings.
    std::uint64_t offsetInFile(std::uint64_t position) const { return _offset + _step * position; }

    /// Line of the file that a line of the source is, both 1-based, for findings; 0, which is none, is 0.
    std::size_t lineInFile(std::size_t line) const;

    /// Where a line of the source stands, or a record with `line` 0, for findings.
    Place place(std::size_t line, const std::string& field, std::uint64_t position) const;

    /// A path by which the library reads these very bytes ("/proc/self/fd/7") while the source lives; empty where the
    /// source is not a whole file, or the system has no such paths.
    std::string pathOfWholeFile() const;

private:
    struct File;

    std::shared_ptr<const File> _file;        ///< or none
    std::shared_ptr<const std::string> _text; ///< or none
    std::string_view _bytes;                  ///< in memory, if there is no file
    std::string _name;
    std::uint64_t _offset = 0; ///< of the first byte in the file
    std::uint64_t _length = 0;
    std::uint64_t _step = 1; ///< as of `ofText`
    std::size_t _firstLine = 1;
};

} // namespace OrvComtradeIntake
