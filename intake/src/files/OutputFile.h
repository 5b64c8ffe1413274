#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// A new file that is written in large pieces. Members throw `std::system_error` if it can't be written.
class OutputFile {
public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    OutputFile(OutputFile&&) = delete;
    OutputFile& operator=(OutputFile&&) = delete;

    void write(std::string_view bytes);

    /// What is appended to this goes to the file; call `flushIfLarge` now and then.
    std::string& buffer() { return _buffer; }
    void flushIfLarge();

    void finish();

private:
    void _flush();
    [[noreturn]] void _fail() const;

    std::string _path;
    int _file;
    std::string _buffer;
};

} // namespace OrvComtradeIntake
