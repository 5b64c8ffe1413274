#pragma once

#include "input/Recording.h"
#include "output/TimeScale.h"
#include "output/json.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// A channel of an export.
struct Column {
    std::string name; ///< no other column has it
    std::string unit; ///< empty for a status channel
    const char* side; ///< empty for a status channel
};

/// What every format says about a recording before its samples.
struct ExportTable {
    std::string recording; ///< file name
    const Recording& source;
    std::vector<Column> analog;
    std::vector<Column> status;
    TimeScale scale;
    bool keepsSkew; ///< else values are those at the times of the samples
};

struct TableRequest {
    TimeBase base = TimeBase::Relative;
    bool keepsSkew = true;
};

/// Throws a Failure where the recording does not have what the times are to be counted from.
ExportTable exportTable(const Recording& recording, const std::string& path, const TableRequest& wanted);

/// All that is known of the recording, as an object: station, times, rates, columns (the time first), of which each has
/// everything that its line records.
Json tableValue(const ExportTable& table);

/// One sample of all channels.
class Row {
public:
    explicit Row(const OrvComtradeIntake::Columns& columns);

    bool isEnd() const { return _index == _columns.samples; }
    void advance();

    double time() const { return _columns.time[_index]; }
    double analog(std::size_t channel) const { return _columns.column(channel)[_index]; } ///< NaN where it is missing
    bool status(std::size_t channel) const { return _columns.states[channel][_change[channel]].state; }

private:
    const OrvComtradeIntake::Columns& _columns;
    std::size_t _index = 0;
    std::vector<std::size_t> _change; ///< per status channel: the one that gave it its state
};

/// Calls for every sample, in order.
void forEachRow(const ExportTable& table, const std::function<void(const Row&)>& onRow);
