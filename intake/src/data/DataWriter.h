#pragma once

#include "data/Blocks.h"
#include "data/missingValues.h"

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

/// How the values of a channel are written.
struct ChannelForm {
    double divisor = 1.0; ///< raw values are divided by this
    int decimals = 0;     ///< in ASCII data, values are also divided by ten to this power, exactly
    bool isReal = false;  ///< in ASCII data, values are written as the shortest decimal that reads back
};

/// How data are written.
struct DataOutput {
    DataType type = DataType::Ascii;
    std::size_t statuses = 0;
    const char* lineEnd = "\n";
    bool renumbers = false;           ///< samples are numbered from 1 on
    bool keepsMarkers = true;         ///< missing values are written as they are read
    std::int64_t missingCode = 99999; ///< otherwise missing values of ASCII data are written as this
    bool mayHaveLongNumbers = false;  ///< in ASCII data, one beyond integers of 64 bits is written with all its digits
    bool mayLeaveStampsOut = false;   ///< a stamp that is not recorded is left empty
    bool computesStamps = false;      ///< stamps are written as `stampSteps` say
    /// Pairs of a 0-based sample and the step between stamps from that sample on.
    std::vector<std::pair<std::uint64_t, double>> stampSteps;
    std::vector<ChannelForm> channels;
};

/// Writes blocks of a recording as lines or records.
class DataWriter {
public:
    /// `missing`: by channel, then sample.
    DataWriter(const DataOutput& output, const std::vector<MissingRun>& missing, const Sink& sink);

    /// Blocks must hold all channels, in order.
    void write(const Block& block);

    /// 0-based analog channels with a value that was changed in writing. Missing values do not count.
    std::vector<std::size_t> rounded() const;

private:
    void _writeLine(const Block& block, std::size_t row);
    void _writeRecord(const Block& block, std::size_t row);
    std::int64_t _numberOf(const Block& block, std::size_t row) const;
    std::int64_t _stampOf(const Block& block, std::size_t row);
    std::int64_t _computedStamp(std::uint64_t sample);
    bool _isMissing(std::size_t channel, std::uint64_t sample);
    std::int64_t _integerOf(std::size_t channel, double raw);
    float _singleOf(std::size_t channel, double value);
    std::int64_t _integerWithin(std::size_t channel, double value, double least, double greatest);
    void _putValue(std::size_t channel, double raw, bool isMissing, char* bytes);

    const DataOutput& _output;
    const Sink& _sink;
    std::vector<MissingCursor> _missing;
    std::vector<bool> _isRounded; ///< by channel
    std::string _bytes;
    int _mostDecimals = 0;
    std::size_t _step = 0;   ///< of DataOutput::stampSteps
    double _stepBegin = 0.0; ///< stamp of its first sample
};

} // namespace OrvComtradeIntake
