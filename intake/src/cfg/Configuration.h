#pragma once

#include "Instant.h"
#include "Options.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// Encodings of the data (IEEE C37.111-2013, 7.4.9).
enum class DataEncoding { Ascii, Binary, Binary32, Float32 };

/// The type word of the standard.
const char* typeWord(DataEncoding encoding);

/// What an analog channel line says. Texts are UTF-8 without blanks around them or commas in them. Numbers are long
/// doubles, so that factors can be multiplied in and rounded to a double once.
struct AnalogLine {
    std::string id;
    std::string phase;
    std::string component;
    std::string unit;
    long double a = 1.0L;
    long double b = 0.0L;
    double skew = 0.0; ///< microseconds
    double min = 0.0;
    double max = 0.0;
    double primary = 1.0;
    double secondary = 1.0;
    Side side = Side::Recorded; ///< Recorded where the line does not say (revision 1991)

    std::uint64_t unitOffset = 0; ///< places of fields in the file, for findings
    std::uint64_t primaryOffset = 0;
    std::uint64_t sideOffset = 0;
};

/// What a status channel line says.
struct StatusLine {
    std::string id;
    std::string phase;
    std::string component;
    int normalState = 0;
};

struct RateLine {
    double rate = 0.0;           ///< samples per second, or 0: times are in the data
    std::uint64_t endSample = 0; ///< as written; settleRates makes it the library's
};

/// What a `.cfg` says, once understood.
struct Configuration {
    std::string station;
    std::string recorder;
    int revision = 1999; ///< 1991, 1999 or a later year: what the line layout amounts to
    std::vector<AnalogLine> analog;
    std::vector<StatusLine> status;
    double lineFrequency = 0.0;
    std::vector<RateLine> rates;  ///< at least one; one with rate 0 where the times are in the data
    bool ratesAreSettled = false; ///< written by the intake: each endSample is a length, as the library counts
    std::optional<Instant> start;
    std::optional<Instant> trigger;
    bool nanosecondStamps = false; ///< the dates have more than six digits of a second (2013, 7.4.8): stamps count ns
    bool stampsAreSettled = false; ///< written by the intake: stamps count microseconds whatever the dates say
    DataEncoding encoding = DataEncoding::Ascii;
    double timeMultiplier = 1.0;
    std::string timeCode;
    std::string localCode;
    std::string timeQuality;
    std::string leapSecond;

    bool hasDecimalCommas = false;  ///< a number was read that is written with one
    std::size_t channelLine = 2;    ///< index in CfgText of the first channel's line, for findings
    std::size_t rateLine = 0;       ///< the same of the first rate
    std::size_t multiplierLine = 0; ///< the same of the time multiplier

    std::uint64_t samplesDeclared() const { return rates.empty() ? 0 : rates.back().endSample; }

    /// Times come from the stamps in the data.
    bool timesAreStamped() const;
};

} // namespace OrvComtradeIntake
