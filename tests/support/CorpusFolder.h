#pragma once

#include <cstdlib>
#include <filesystem>

namespace orvtest {

/// Where real recordings are kept, outside the repository: ORV_CORPUS_DIR in the environment, or a folder beside the
/// checkout. It need not exist.
inline std::filesystem::path corpusFolder() {
    if (const char* given = std::getenv("ORV_CORPUS_DIR"); given != nullptr && *given != '\0') {
        return given;
    }
    return std::filesystem::path(ORV_SOURCE_DIR) / ".." / "shared" / "corpus";
}

} // namespace orvtest
