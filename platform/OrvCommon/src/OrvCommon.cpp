#include "OrvCommon.h"

#include <filesystem>
#include <system_error>

namespace Orv {

bool fileExist(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    return std::filesystem::is_regular_file(status) || std::filesystem::is_directory(status);
}

std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode) {
    // File names are bytes on this platform, so a UTF-8 path is opened as it stands.
    return std::ifstream(path, mode);
}

} // namespace Orv
