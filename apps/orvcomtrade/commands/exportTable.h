#pragma once

#include "input/Recording.h"
#include "output/TimeScale.h"
#include "output/json.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// A channel of an export.
struct Column {
    std::string name; ///< unique
    std::string unit; ///< empty for a status channel
    const char* side; ///< empty for a status channel
};

/// What every format needs to know about a recording before its samples.
struct ExportTable {
    std::string recording; ///< file name
    const Recording& source;
    std::vector<Column> analog;
    std::vector<Column> status;
    TimeScale scale;
    bool keepsSkew; ///< if not, values are brought to the times of the samples (see SkewAlignment)
};

struct TableRequest {
    TimeBase base = TimeBase::Relative;
    bool keepsSkew = true;
};

/// Throws a Failure if the recording lacks what the times are counted from.
ExportTable exportTable(const Recording& recording, const std::string& path, const TableRequest& wanted);

/// Everything known of the recording, as an object: station, times, rates, and columns (the time first), each with
/// everything that its line records.
Json tableValue(const ExportTable& table);

/// Calls `onBlock` for every block of samples, in order. Missing values are NaN.
void forEachBlock(const ExportTable& table, const std::function<void(const OrvComtradeIntake::Columns&)>& onBlock);

/// How a row of states is written: the same text for each channel, except for one character.
struct StateForm {
    std::string_view none;    ///< text of a channel whose state is 0
    std::size_t position = 0; ///< index in that text of the character that shows the state
    char one = '1';           ///< that character for a state of 1
};

/// The states of a block, row by row as text. Only what changes from row to row is written again.
class StateRows {
public:
    StateRows(const OrvComtradeIntake::Columns& block, const StateForm& form);

    /// The next row, valid until the next call. There is one per sample.
    std::string_view next();

private:
    /// A state of a row other than that of the row before.
    struct Change {
        std::uint32_t row = 0;
        std::uint32_t channel = 0;
        bool state = false;
    };

    StateForm _form;
    std::vector<Change> _changes; ///< by row
    std::size_t _next = 0;        ///< of these
    std::size_t _rowNumber = 0;
    std::string _row;
};

/// One sample of all channels.
class Row {
public:
    explicit Row(const OrvComtradeIntake::Columns& columns)
        : _columns(columns), _rows(columns, {"0", 0, '1'}), _states(_rows.next()) {}

    bool isEnd() const { return _index == _columns.samples; }
    void advance() {
        ++_index;
        _states = _rows.next();
    }

    double time() const { return _columns.time[_index]; }
    double analog(std::size_t channel) const { return _columns.column(channel)[_index]; } ///< NaN where it is missing
    bool status(std::size_t channel) const { return _states[channel] == '1'; }

private:
    const OrvComtradeIntake::Columns& _columns;
    StateRows _rows;
    std::string_view _states;
    std::size_t _index = 0;
};

/// Calls `onRow` for every sample, in order.
void forEachRow(const ExportTable& table, const std::function<void(const Row&)>& onRow);
