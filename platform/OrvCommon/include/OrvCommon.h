#pragma once

/// The contract of the platform library: what a site supplies in place of this stand-in. See README.md.

#include <fstream>
#include <ios>
#include <string>

#if defined(__GNUC__)
#define ORVCOMMON_API __attribute__((visibility("default")))
#else
#define ORVCOMMON_API
#endif

namespace Orv {

/// One plot point. x is the time in seconds, y the value.
struct PointF {
    float x = 0.0F;
    float y = 0.0F;
};

/// Whether a regular file or a directory exists at a UTF-8 path; links are followed, and permission to read is not
/// asked. A pipe, socket or device is no file here, so that nobody waits on one.
ORVCOMMON_API bool fileExist(const std::string& path);

/// A stream for reading the file at a UTF-8 path, opened with `mode`; a failed stream when it cannot be opened. Throws
/// nothing of its own.
ORVCOMMON_API std::ifstream openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode);

} // namespace Orv
