// Where whole recordings are: the small ones of tests/recordings, and real ones that a developer may keep elsewhere.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvtest {

inline std::filesystem::path madeFolder() {
    return std::filesystem::path(ORV_SOURCE_DIR) / "tests" / "recordings";
}

/// The folder of real recordings that ORV_CORPUS_DIR names, or none. Throws `std::runtime_error` for a wrong name:
/// tests would otherwise be skipped silently.
inline std::vector<std::filesystem::path> corpusFolders() {
    const char* const given = std::getenv("ORV_CORPUS_DIR"); // NOLINT(concurrency-mt-unsafe)
    if (given == nullptr || *given == '\0') {
        return {};
    }
    if (!std::filesystem::is_directory(given)) {
        throw std::runtime_error("ORV_CORPUS_DIR is no folder: " + std::string(given));
    }
    return {given};
}

inline bool isMade(const std::string& recording) {
    return std::filesystem::is_directory(madeFolder() / recording);
}

/// A file of a recording, which is named by its folder.
inline std::filesystem::path fileOf(const std::string& recording, const std::string& name) {
    return (isMade(recording) ? madeFolder() : corpusFolders().at(0)) / recording / name;
}

/// A name for tests: "s01" for real ones, the letters and digits for made ones.
inline std::string labelOf(std::string recording) {
    if (!isMade(recording)) {
        return recording.substr(0, 3);
    }
    std::replace_if(
        recording.begin(), recording.end(), [](char letter) { return letter == '-' || letter == '.'; }, '_');
    return recording;
}

/// The rows for the made ones and, where there is a corpus, those for the real ones.
template <class Row, std::size_t Made, std::size_t Real>
std::vector<Row> rowsAtHand(const Row (&made)[Made], const Row (&real)[Real]) {
    std::vector<Row> rows(made, made + Made);
    if (!corpusFolders().empty()) {
        rows.insert(rows.end(), real, real + Real);
    }
    return rows;
}

} // namespace orvtest
