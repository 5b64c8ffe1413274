#pragma once

/// @file
/// The contract of the platform library: what a site supplies in place of this stand-in. See README.md.

#include <fstream>
#include <ios>
#include <string>

#if defined(__GNUC__)
/// Marks what the stand-in exports; a site's own library needs no such mark.
#define ORVCOMMON_API __attribute__((visibility("default")))
#else
#define ORVCOMMON_API
#endif

/// The names that the library takes from the platform library.
namespace Orv {

/// One plot point.
struct PointF {
    float x = 0.0F; ///< time in seconds
    float y = 0.0F; ///< value in base units, or 0 and 1 for a state
};

/// Whether a regular file or a directory exists at a UTF-8 path; links are followed, and permission to read is not
/// asked. A pipe, socket or device is no file here, so that nobody waits on one.
ORVCOMMON_API bool fileExist(const std::string& path);

/// A stream for reading the file at a UTF-8 path, opened with `mode`; a failed stream when it cannot be opened. Throws
/// nothing of its own.
ORVCOMMON_API std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode);

} // namespace Orv
