#pragma once

#include "input/Recording.h"

#include <OrvComtradeIntake/Instant.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One line about a recording. From `station` on, members are set as far as they are known.
struct RecordingRow {
    std::string path;    ///< by which it can be opened
    std::string verdict; ///< of `check`; empty if its files cannot be opened
    std::string problem; ///< sentence why it cannot be read, or empty
    std::string station;
    std::string recorder;
    std::optional<OrvComtradeIntake::Instant> start;
    std::optional<OrvComtradeIntake::Instant> trigger;
    std::optional<double> duration; ///< seconds; nothing if it cannot be read
    std::uint64_t samples = 0;
    std::vector<double> rates; ///< without those equal to the one before; empty if the times are in the data
    std::size_t analog = 0;    ///< number of analog channels
    std::size_t status = 0;    ///< number of status channels
    int revision = 0;
    std::string dataType; ///< type word of the standard
};

/// Appends the next rate of a recording, unless it equals the last one.
void addRate(double rate, std::vector<double>& rates);

RecordingRow rowOf(const std::string& path, const Recording& recording);
