#pragma once

/// Recordings made for the benchmarks: the same bytes on every machine, in a temporary folder.

#include <string>
#include <vector>

namespace orvbench {

/// A folder of its own under the system's temporary one; goes away with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return _path; }

private:
    std::string _path;
};

enum class Encoding {
    Ascii,
    Binary,
    Float32,
    Binary32, ///< of values that singles do not hold, which the library does not read
    Decimals, ///< ASCII with a decimal point, which the library does not read either
};

enum class StatusBits {
    Seldom, ///< each channel changes every few hundred samples, as in a real recording
    Random, ///< every bit of every sample is drawn
};

enum class Rates {
    One,
    Thousand, ///< as many segments of equal length, each with a rate of its own
    Zero,     ///< times from the stamps of the data file
};

struct Shape {
    unsigned long analogs = 0;
    unsigned long statuses = 0;
    unsigned long samples = 0;
    Encoding encoding = Encoding::Binary;
    StatusBits statusBits = StatusBits::Seldom;
    Rates rates = Rates::One;
};

/// Two files of one recording.
struct Recording {
    std::string cfg;
    std::string dat;
    unsigned long cfgBytes = 0;
    unsigned long datBytes = 0;
};

/// Writes the configuration file alone.
Recording writeConfiguration(const Shape& shape, const std::string& folder);

/// Writes both files.
Recording writeRecording(const Shape& shape, const std::string& folder);

} // namespace orvbench
