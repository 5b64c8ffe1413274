#pragma once

#include "Cfg.h"
#include "LineScanner.h"
#include "Sample.h"
#include "SampleClock.h"
#include "StatusBits.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeLib {

/// Decodes the lines or records of one data file in a row: what Sample::load does for one of them, with everything
/// that stays the same from sample to sample taken out of the loop. Samples must come in the order of their index.
class SampleDecoder {
public:
    explicit SampleDecoder(const Cfg& configuration);

    /// Whether the fields of a record all lie inside `recordLength`, as they do for a configuration read from a file.
    bool recordsAreWhole() const;

    /// Bytes of the shortest line that decodes, its line feed included.
    std::uint64_t shortestLine() const { return _shape.shortestLine(); }

    /// Fills a fresh sample whose `index` is set; false when the line does not hold every expected column.
    bool decodeLine(std::string_view line, Sample& sample);

    /// Fills a fresh sample whose `index` is set; false when a channel has no configuration record.
    bool decodeRecord(const char* record, Sample& sample);

private:
    double _timeOf(std::uint32_t timestamp, unsigned long index);
    void _decodeAnalogValues(const char* bytes);
    template <class Raw> void _scaleRawValues(const char* bytes);
    template <class RawOf> void _scale(std::size_t count, RawOf rawOf);
    void _decodeStatusBits(const char* bytes, std::vector<bool>& states);

    const Cfg& _cfg;
    LineShape _shape;
    SampleClock _clock;
    std::uint32_t _analogCount;
    std::uint32_t _statusCount;
    std::uint32_t _wordsRead; ///< status words of a record that hold channels

    /// Of the analog channels that have a configuration record; in arrays of their own, for the sake of vector units.
    std::vector<double> _a;
    std::vector<double> _b;
    std::vector<double> _unitMultiplier;

    /// Analog values of the line or record being read. A sample gets a copy: its own would be zeroed first.
    std::vector<double> _values;
    std::string _statusText; ///< status columns or words read last
    StatusBits _statusBits;  ///< and their states
};

} // namespace OrvComtradeLib
