#pragma once

#include <OrvComtradeIntake/Finding.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Bytes of a recording, wherever they are: a file, a part of one, or memory. Copies share the open file, which is
/// opened once and used to the end. Several threads may read from it.
class ByteSource {
public:
    /// Opens a regular file. It never waits for a pipe or a device of that name. Throws a FileError: EISDIR for a
    /// folder, ENOTSUP for anything else that is not a regular file.
    static ByteSource ofFile(const std::string& path);

    /// Bytes in memory, which must outlive the source. `name` is for findings.
    static ByteSource ofMemory(std::string_view bytes, const std::string& name);

    /// Bytes that the source owns. For findings, they come from `offset` in the file `name`, where each of them takes
    /// `step` bytes. With `step` 0 all of them come from that place, in another form.
    static ByteSource ofText(std::string bytes, const std::string& name, std::uint64_t offset, std::uint64_t step = 0);

    /// The bytes from `position` on, `length` of them at most.
    ByteSource part(std::uint64_t position, std::uint64_t length) const;

    std::uint64_t length() const { return _length; }
    const std::string& name() const { return _name; } ///< path of the file, or the name given to memory

    /// Copies up to `most` bytes from `position` on; fewer only at the end. Throws a FileError, also if the file has
    /// changed since it was opened: all bytes are of one state of the file.
    std::size_t read(std::uint64_t position, char* into, std::size_t most) const;

    /// All bytes. Throws a FileError.
    std::string all() const;

    /// The same bytes, for which findings count lines from `line` of the file on.
    ByteSource withFirstLine(std::size_t line) const;

    /// Throws a FileError if the file has changed since it was opened. To be called after reading by `pathOfWholeFile`.
    void requireUnchanged() const;

    /// Byte offset in the file of a byte of the source, for findings.
    std::uint64_t offsetInFile(std::uint64_t position) const { return _offset + _step * position; }

    /// Line of the file that a line of the source is, for findings. Both are 1-based; 0 (no line) stays 0.
    std::size_t lineInFile(std::size_t line) const;

    /// Place of a line of the source for findings; of a record, if `line` is 0.
    Place place(std::size_t line, const std::string& field, std::uint64_t position) const;

    /// A path by which the library reads these very bytes ("/proc/self/fd/7") while the source lives. Empty if the
    /// source is not a whole file, or if the system has no such paths.
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
