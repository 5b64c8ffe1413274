#pragma once

#include "Finding.h"
#include "Instant.h"
#include "Options.h"
#include "ScratchFolder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// An analog channel as its line declares it; the prepared pair may have other units and another side.
struct AnalogOrigin {
    std::string unit;            ///< as written, in UTF-8
    Side side = Side::Recorded;  ///< Primary or Secondary; Recorded where the line does not say
    double primary = 1.0;        ///< transformer ratio
    double secondary = 1.0;      ///< transformer ratio
    Side given = Side::Recorded; ///< side of the values that the prepared pair gives; Recorded where it is not known
};

/// Consecutive samples in which an analog channel has no value (IEEE C37.111-2013, 8.4 and 8.6).
struct MissingRun {
    std::size_t channel = 0;  ///< 0-based analog channel
    std::uint64_t sample = 0; ///< 0-based first sample
    std::uint64_t count = 0;  ///< samples
};

/// A recording that the library reads rightly, and what the library does not keep of it. Owns the files made for it:
/// they are gone with it, so it outlives the load (not the loaded `Comtrade`).
struct PreparedRecording {
    /// Path to hand to `Comtrade::load`; empty if the recording can't be read (a finding of severity Error says why).
    std::string path;

    std::string cfgFile; ///< configuration file (or `.cff`) as found, or empty
    std::string datFile; ///< data file (or `.cff`) as found, or empty: configuration only

    std::vector<Finding> findings; ///< in the order of the files: configuration, then data

    std::optional<Instant> start;   ///< time of the first sample, where the file gives one
    std::optional<Instant> trigger; ///< time of the trigger, where the file gives one
    std::string timeCode;           ///< time code of the times ("-5h30"), or empty (revision 2013)
    std::string localCode;          ///< time code of the place of recording, or empty
    std::string timeQuality;        ///< time quality indicator code, or empty
    std::string leapSecond;         ///< leap second indicator, or empty

    std::vector<AnalogOrigin> analog;  ///< one per analog channel
    std::vector<MissingRun> missing;   ///< by channel, then sample; the library gives the file's marker, scaled, or NaN
    std::string encoding = "ASCII";    ///< of the texts as found: ASCII, UTF-8, CP866, CP1251, GB18030, ISO-8859-1, ...
    std::string dataType;              ///< as found: ASCII, BINARY, BINARY32 or FLOAT32
    std::uint64_t samplesDeclared = 0; ///< by the configuration
    std::uint64_t samplesPresent = 0;  ///< in the data, and in the prepared pair

    ScratchFolder scratch; ///< holds the prepared pair, or is empty when `path` is the original

    /// Whether there is something to hand to the library.
    bool readable() const { return !path.empty(); }

    /// Whether the library is given the original files, untouched.
    bool isOriginal() const { return readable() && scratch.path().empty(); }
};

} // namespace OrvComtradeIntake
