#pragma once

#include "OrvComtradeExport.h"

#include <cstdint>
#include <fstream>
#include <string>

namespace OrvComtradeLib {

/// File names and file lengths of a recording. Stateless; safe from any thread.
///
/// Every operation that looks at an extension throws `std::out_of_range` for a path without any '.'.
class ORVCOMTRADE_API FilesHelper {
public:
    /// Whether the file can be opened for reading (not merely whether it exists).
    static bool isFileExist(const std::string& path);

    /// The text from the last '.' of the whole path, directories included, to its end; the dot belongs to it.
    static std::string getFileExtension(const std::string& path);

    /// The text before the last '.' of the whole path, or the whole path when it has none.
    static std::string getfileNameWithoutExtension(const std::string& path);

    /// Whether the extension is ".cfg" in any case.
    static bool isCfgFile(const std::string& path);

    /// Whether the extension is ".dat" in any case.
    static bool isDatFile(const std::string& path);

    /// Whether the extension is ".cff" in any case.
    static bool isCffFile(const std::string& path);

    /// Whether the extension is any of the three.
    static bool isComtradeFile(const std::string& path);

    /// Path of the recording's configuration file: `path` itself if it is one, else with the extension ".cfg".
    static std::string cfgFileName(const std::string& path);

    /// Path of the recording's data file: `path` itself if it is one, else with the extension ".dat".
    static std::string datFileName(const std::string& path);

    /// Length of the open file in bytes, or -1 for a stream in a failed state. The read position stays where it was.
    static std::int64_t fileLenght(std::ifstream& stream);

    /// Length of the file in bytes, or -1 when it cannot be opened.
    static std::int64_t fileLenght(const std::string& path);
};

} // namespace OrvComtradeLib
