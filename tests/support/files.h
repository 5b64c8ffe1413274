// Whole files, as the tests read and write them.

#pragma once

#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

namespace orvtest {

/// All bytes of a file. Throws `std::runtime_error` where there is none that can be read.
inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in.is_open() || in.bad()) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return bytes;
}

/// Makes the file with exactly these bytes, replacing one of that name. Throws `std::runtime_error`.
inline void writeFile(const std::filesystem::path& path, const std::string& bytes,
                      std::ios::openmode how = std::ios::trunc) {
    std::ofstream out(path, std::ios::binary | how);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

/// Writes behind what the file holds. Throws `std::runtime_error`.
inline void appendTo(const std::filesystem::path& path, const std::string& bytes) {
    writeFile(path, bytes, std::ios::app);
}

/// The files of a folder: name to bytes.
inline std::map<std::string, std::string> contentsOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> contents;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder)) {
        contents[entry.path().filename().string()] = bytesOf(entry.path());
    }
    return contents;
}

} // namespace orvtest
