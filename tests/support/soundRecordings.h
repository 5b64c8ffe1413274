#pragma once

// Recordings as recorders make them when nothing went wrong: by the standard, in the ways in which real ones differ
// within it. Made of seeds, the same on every machine.

#include "intake/slowReader.h"

#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace orvtest {

/// Random numbers that are the same everywhere (SplitMix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : _state(seed) {}

    std::uint64_t next();

    /// From `low` to `high`, both included.
    std::int64_t between(std::int64_t low, std::int64_t high);
    std::size_t count(std::size_t low, std::size_t high);

    /// True once in `times`.
    bool onceIn(int times) { return between(1, times) == 1; }

    template <class Value> Value oneOf(std::initializer_list<Value> values) {
        return *(values.begin() + static_cast<std::ptrdiff_t>(count(0, values.size() - 1)));
    }

private:
    std::uint64_t _state;
};

enum class RateHabit {
    One,     ///< one sampling rate
    Several, ///< two to four, with cumulative ends
    Zero     ///< a rate of 0: times are in the data
};

enum class StampHabit {
    FromZero,
    FromOnePeriod, ///< the first sample has the stamp of the second
    FromElsewhere, ///< the first stamp is any number
    Jittered,      ///< one microsecond up or down
    Constant,      ///< 0 throughout; only with a rate
    Missing,       ///< no stamps; only with a rate
    Wrapped        ///< stamps wrap at 32 bits within the recording; only with a rate
};

enum class RangeHabit {
    OfValues,      ///< least and greatest value
    OfEncoding,    ///< what the encoding can hold
    OfBinary,      ///< -32767 to 32767, whatever the encoding and the values
    OfAscii,       ///< -99999 to 99998, whatever the encoding and the values
    OfValuesScaled ///< least and greatest value in the unit of the channel
};

/// Properties of a recording that are chosen at random.
struct Shape {
    int revision = 1999;
    OrvComtradeIntake::DataType type = OrvComtradeIntake::DataType::Ascii;
    std::size_t analogs = 2;
    std::size_t statuses = 3;
    std::size_t samples = 200;
    RateHabit rates = RateHabit::One;
    std::string rate = "1000"; ///< of RateHabit::One, and of the steps of RateHabit::Zero
    StampHabit stamps = StampHabit::FromZero;
    RangeHabit range = RangeHabit::OfEncoding;
    std::uint32_t firstNumber = 1;
    int missingOnceIn = 0;       ///< values; 0: none is missing
    bool hasNanoseconds = false; ///< dates and stamps, revision 2013
    bool hasCarriageReturns = true;
    bool hasBlanks = false;    ///< around fields
    bool hasUtf8 = false;      ///< in names
    bool endsWithMark = false; ///< 0x1A behind ASCII data
};

Shape randomShape(Random& random);

/// The choices as text for a log.
std::string text(const Shape& shape);

/// A recording, sample by sample, so that tests can damage it.
struct SoundRecording {
    Shape shape;
    std::vector<std::string> cfgLines; ///< without their ends
    std::vector<std::string> records;  ///< data lines with their ends, or binary records
    slow::Facts facts;                 ///< for the slow reader

    std::string cfg() const;
    std::string dat() const;
    std::string combined() const;                                             ///< all of it as one `.cff`
    std::size_t analogLine(std::size_t channel) const { return 2 + channel; } ///< its index in `cfgLines`
    std::size_t rateLine() const;  ///< index of the first sampling rate in `cfgLines`
    std::size_t startLine() const; ///< index of the start in `cfgLines`; the trigger is next, then the type
};

SoundRecording soundRecording(const Shape& shape, Random& random);

} // namespace orvtest
