#pragma once

#include "DataLines.h"
#include "LineFaults.h"
#include "asciiLine.h"
#include "plainLines.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace OrvComtradeIntake {

/// A sample with its place.
struct PlacedSample {
    AsciiSample sample;
    bool asTheLibrary = true; ///< the library reads it so, and what stands before it as well
    std::size_t line = 0;
    std::uint64_t position = 0; ///< of the line, in the data
};

/// Finds the samples in ASCII data. A line that is no sample is passed over; one that is too short is a sample if
/// another one follows.
class AsciiSamples {
public:
    AsciiSamples(const DataSource& source, const DataLayout& layout, bool stamped);

    /// The next sample, valid until the next call; nothing at the end.
    const PlacedSample* next();

    /// Passes over up to `most` samples whose lines are plain and in memory: `onRun(const LineRun&)` gets them. Gives
    /// their number.
    template <class OnRun> std::uint64_t takePlain(std::uint64_t most, OnRun onRun);

    /// Faults of the lines before the sample that `next` gave, or before the end, since the last call.
    const LineFaults& mended() const { return _mended; }     ///< those that the library reads wrongly
    const LineFaults& harmless() const { return _harmless; } ///< those that it does not mind
    const LineFaults& pending() const { return _between; }   ///< of lines behind the last sample

private:
    bool _readLine();
    void _understand(const DataLine& line);
    void _place(const DataLine& line);
    bool _isOddByStamp(const DataLine& line) const;
    void _noteBetween(const FieldFault& fault, const DataLine& line);
    void _accept(PlacedSample& placed);

    const DataLayout& _layout;
    bool _stamped;
    DataLines _lines;
    PlainLines _plain;
    PlacedSample _read;    ///< the line read last
    bool _isUsual = false; ///< so is that line
    PlacedSample _waiting; ///< a short one
    bool _isWaiting = false;
    bool _isHeld = false;        ///< `_read` comes after `_waiting`
    bool _insideLine = false;    ///< CR alone stands before; the library sees one line
    bool _contentBefore = false; ///< in that line
    bool _bytesBefore = false;   ///< in that line
    bool _brokenBetween = false; ///< the library stumbles over a line before the next sample
    LineFaults _between;
    LineFaults _mended;
    LineFaults _harmless;
};

template <class OnRun> std::uint64_t AsciiSamples::takePlain(std::uint64_t most, OnRun onRun) {
    static_assert(LineReader::kSlack >= PlainLines::kSlack);
    if (_isWaiting || _isHeld || _insideLine || _brokenBetween) {
        return 0;
    }
    return _lines.takeLines([&](const char* begin, const char* end) {
        const LineRun run = _plain.take(begin, end, most);
        if (run.count != 0) {
            onRun(run);
        }
        return run;
    });
}

} // namespace OrvComtradeIntake
