#pragma once

#include "input/Recording.h"

#include <OrvComtradeIntake/Instant.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What is said of a recording in one line.
struct RecordingRow {
    std::string path;    ///< to open it by
    std::string verdict; ///< of `check`; empty: nobody could look at its files
    std::string problem; ///< sentence why it can't be read, or empty
    std::string station; ///< as far as it is known, as what follows
    std::string recorder;
    std::optional<OrvComtradeIntake::Instant> start;
    std::optional<OrvComtradeIntake::Instant> trigger;
    std::optional<double> duration; ///< seconds; none where it can't be read
    std::uint64_t samples = 0;
    std::vector<double> rates; ///< those that differ from the one before; none where the times are in the data
    std::size_t analog = 0;    ///< channels
    std::size_t status = 0;
    int revision = 0;
    std::string dataType; ///< word of the standard
};

/// Adds the next rate of a recording to those that differ from the one before.
void addRate(double rate, std::vector<double>& rates);

RecordingRow rowOf(const std::string& path, const Recording& recording);
