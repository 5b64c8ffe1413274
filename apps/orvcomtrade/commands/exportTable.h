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

/// Calls for every block of samples, in order; NaN stands for what is missing.
void forEachBlock(const ExportTable& table, const std::function<void(const OrvComtradeIntake::Columns&)>& onBlock);

/// How a row of states is written: the same piece of text for each channel, but for one character.
struct StateForm {
    std::string_view none;    ///< for a channel whose state is 0: the character, and what stands around it
    std::size_t position = 0; ///< of the character in that
    char one = '1';           ///< what it is for a state of 1
};

/// The states of a block, row by row as text: each row is the one before, but for what changes.
class StateRows {
public:
    StateRows(const OrvComtradeIntake::Columns& block, const StateForm& form);

    /// The next row, valid until the next call; there are as many as samples.
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

/// Calls for every sample, in order.
void forEachRow(const ExportTable& table, const std::function<void(const Row&)>& onRow);
