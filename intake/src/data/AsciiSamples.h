#pragma once

#include "data/FastLines.h"
#include "data/LibraryLine.h"
#include "data/LineFaults.h"
#include "data/LineParser.h"
#include "data/LineReader.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace OrvComtradeIntake {

/// A sample and its place.
struct PlacedSample {
    AsciiSample sample;
    bool libraryReads = true; ///< the library reads this sample, and the lines before it, in the same way
    std::size_t line = 0;
    std::uint64_t position = 0; ///< of the line, in the data
};

/// Finds the samples in ASCII data. A line that is not a sample is skipped. A line that is too short is a sample if
/// another sample follows.
class AsciiSamples {
public:
    /// With `asksLibrary`, PlacedSample::libraryReads is found out.
    AsciiSamples(const ByteSource& source, const Header& header, bool asksLibrary);

    /// The next sample, valid until the next call. Null at the end, and also if `lackColumns`.
    const PlacedSample* next();

    /// Skips up to `most` samples whose lines are fast (see FastLines) and in memory. `onRun(const LineRun&)` gets
    /// them. Returns their number.
    template <class OnRun> std::uint64_t takeFast(std::uint64_t most, OnRun onRun);

    void stopAskingLibrary() { _asksLibrary = false; }

    const LineFaults& faults() const { return _faults; }   ///< of the samples so far, and of the lines before them
    const LineFaults& pending() const { return _between; } ///< of lines after the last sample
    bool endsShort() const { return !_shortLine.empty(); } ///< the last line was too short to be a sample
    const PlacedSample& shortLine() const { return _shortLine.front(); }

    /// Whether so many columns are missing that the data cannot be those of these channels. Missing columns are filled
    /// in, so a few bytes would otherwise become a lot of values.
    bool lackColumns() const { return _lackColumns; }
    std::uint64_t absentColumns() const { return _absent; } ///< in samples so far

    LineReader::LineEnd lineEnd() const { return _lines.lineEnd(); }

private:
    bool _readSample();
    bool _readLine(const DataLine& line);
    bool _readParts(const DataLine& line, std::size_t begin);
    void _accept(PlacedSample& placed);

    DataLayout _layout;
    bool _stamped;
    bool _asksLibrary;
    LineReader _lines;
    FastLines _fast;
    LineParser _parser;
    LibraryLine _library;
    PlacedSample _read;                  ///< the sample read last
    PlacedSample _given;                 ///< the sample given last, if it had waited
    std::deque<PlacedSample> _shortLine; ///< none, or one that waits for another sample
    std::deque<PlacedSample> _parts;     ///< samples of a line that CR divides
    std::uint64_t _absent = 0;           ///< columns that short lines lacked
    bool _lackColumns = false;
    bool _isHeld = false;   ///< `_read` has not been given
    bool _stumbles = false; ///< the library stumbles over a line before the next sample
    std::string _part;      ///< text of a part of a line, with slack behind
    LineFaults _between;
    LineFaults _faults;
};

template <class OnRun> std::uint64_t AsciiSamples::takeFast(std::uint64_t most, OnRun onRun) {
    static_assert(LineReader::kSlack >= FastLines::kSlack && LineReader::kSlack >= LineParser::kSlack);
    if (endsShort() || _isHeld || _stumbles || !_parts.empty()) {
        return 0;
    }
    return _lines.takeLines([&](const char* begin, const char* end, std::size_t number, std::uint64_t position) {
        LineRun run = _fast.take(begin, end, most);
        run.number = number;
        run.position = position;
        if (run.count != 0) {
            onRun(run);
        }
        return run;
    });
}

} // namespace OrvComtradeIntake
