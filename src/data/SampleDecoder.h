#pragma once

#include "Cfg.h"
#include "Sample.h"
#include "SampleClock.h"
#include "StatusBits.h"
#include "scanLine.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeLib {

/// Decodes the lines or records of one data file in a row: what Sample::load does for one of them, with everything
/// that stays the same from sample to sample taken out of the loop. Samples must come in the order of their index.
class SampleDecoder {
public:
    explicit SampleDecoder(const Cfg& configuration);

    /// Whether the fields of a record all lie inside `recordLength`, as they do for a configuration read from a file.
    bool recordsAreWhole() const;

    /// Fills a fresh sample whose `index` is set; false when the line does not hold every expected column.
    bool decodeLine(const char* begin, const char* end, Sample& sample);

    /// Fills a fresh sample whose `index` is set; false when a channel has no configuration record.
    bool decodeRecord(const char* record, Sample& sample);

private:
    double _timeOf(std::uint32_t timestamp, unsigned long index);
    void _decodeAnalogValues(const char* bytes, std::vector<double>& values) const;
    template <class Raw> void _scaleValues(const char* bytes, std::vector<double>& values) const;
    void _decodeStatusBits(const char* bytes, std::vector<bool>& states);

    const Cfg& _cfg;
    LineShape _shape;
    SampleClock _clock;
    std::uint32_t _analogCount;
    std::uint32_t _statusCount;

    /// Of the analog channels that have a configuration record; in arrays of their own, for the sake of vector units.
    std::vector<double> _a;
    std::vector<double> _b;
    std::vector<double> _unitMultiplier;

    std::vector<double> _lineValues; ///< analog values of the line being read
    StatusBits _statusBits;          ///< status bits of the sample being read
};

} // namespace OrvComtradeLib
