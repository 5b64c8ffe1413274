#pragma once

#include "json.h"
#include "loadRecording.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A channel of an export.
struct Column {
    std::string name;
    std::string unit; ///< empty for a status channel
    const char* side; ///< empty for a status channel
};

/// What every format says about a recording before its samples.
struct ExportTable {
    std::string recording; ///< file name
    const Recording& source;
    std::vector<Column> analog;
    std::vector<Column> status;
};

ExportTable exportTable(const Recording& recording, const std::string& path);

/// The same as an object: recording, station, recorder, start, trigger, time code, columns (the time first).
Json tableValue(const ExportTable& table);

/// Finds out which values of a recording are missing, sample by sample in rising order.
class MissingValues {
public:
    explicit MissingValues(const Recording& recording);

    bool any() const { return !_runs.empty(); }

    /// `sample` never falls.
    bool contains(std::size_t channel, std::size_t sample);

private:
    const std::vector<OrvComtradeIntake::MissingRun>& _runs;
    std::vector<std::size_t> _next; ///< per channel: its first run that is not over
};
