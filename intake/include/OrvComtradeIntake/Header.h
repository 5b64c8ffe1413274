#pragma once

#include "Instant.h"
#include "Options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// Encoding of the data (IEEE C37.111-2013, 7.4.9).
enum class DataType {
    Ascii,    ///< text lines
    Binary,   ///< records with 16-bit integers
    Binary32, ///< records with 32-bit integers
    Float32   ///< records with IEEE 754 singles
};

/// The type word of the standard: "ASCII", "BINARY", "BINARY32" or "FLOAT32".
const char* typeWord(DataType type);

/// An analog channel as its line declares it (IEEE C37.111-2013, 7.4.4). A raw sample x has the value a x + b, in
/// `unit` and on `side`.
struct AnalogInfo {
    std::uint64_t number = 0;   ///< channel number as written (An)
    std::string id;             ///< channel identifier
    std::string phase;          ///< phase identification
    std::string component;      ///< circuit component being monitored
    std::string unit;           ///< as written, prefix included ("kV")
    double a = 1.0;             ///< channel multiplier
    double b = 0.0;             ///< channel offset adder
    double skew = 0.0;          ///< microseconds from the start of the sample period
    double min = 0.0;           ///< lower end of the range of raw values
    double max = 0.0;           ///< upper end of the range of raw values
    double primary = 1.0;       ///< transformer ratio, primary factor
    double secondary = 1.0;     ///< transformer ratio, secondary factor
    Side side = Side::Recorded; ///< side of a x + b; Recorded if the line declares none, as in revision 1991
};

/// A status channel as its line declares it (IEEE C37.111-2013, 7.4.5).
struct StatusInfo {
    std::uint64_t number = 0; ///< channel number as written (Dn)
    std::string id;           ///< channel identifier
    std::string phase;        ///< phase identification
    std::string component;    ///< circuit component being monitored
    int normalState = 0;      ///< 0 or 1
};

/// A sampling rate (IEEE C37.111-2013, 7.4.7).
struct RateInfo {
    double rate = 0.0;           ///< samples per second; 0 if the times are in the data
    std::uint64_t endSample = 0; ///< number of the last sample at this rate, counted from the first sample
};

/// Everything that a configuration records, as it is meant: each field by itself, texts in UTF-8 without blanks around
/// them. No value is converted to another unit or side.
struct Header {
    std::string station;
    std::string recorder;
    int revision = 1999; ///< 1991, 1999 or a later year: the layout of the lines
    std::vector<AnalogInfo> analog;
    std::vector<StatusInfo> status;
    double lineFrequency = 0.0;          ///< nominal, Hz
    std::vector<RateInfo> rates;         ///< at least one; a rate of 0 if the times are in the data
    std::optional<Instant> start;        ///< time of the first sample, if the file gives one
    std::optional<Instant> trigger;      ///< time of the trigger, if the file gives one
    DataType dataType = DataType::Ascii; ///< how the data really are encoded, whatever the type word says
    double timeMultiplier = 1.0;         ///< factor of the time stamps
    std::string timeCode;                ///< time code of the times ("-5h30"), or empty (revision 2013)
    std::string localCode;               ///< time code of the place of recording, or empty (revision 2013)
    std::string timeQuality;             ///< time quality indicator code, or empty (revision 2013)
    std::string leapSecond;              ///< leap second indicator, or empty (revision 2013)
    bool hasNanosecondDates = false; ///< dates have more than six decimals; since revision 2013 stamps then count ns

    std::string encoding = "ASCII"; ///< of the texts in the file: ASCII, UTF-8, UTF-16LE, CP866, CP1251, GB18030, ...
    std::string hdr;                ///< text of the header file or section (clause 6), or empty
    std::string inf;                ///< text of the information file or section (clause 9), or empty

    std::uint64_t samplesDeclared = 0; ///< by the configuration
    std::uint64_t samples = 0;         ///< in the data

    /// Whether times come from the stamps in the data: some rate is 0, or there is none.
    bool timesAreStamped() const;

    /// The rates that samples have. Rates without samples are left out, neighbours of the same rate become one, and the
    /// last end is the number of the last sample.
    ///
    /// Returns `rates` unchanged in three cases: times come from the stamps; there are no samples; or the ends
    /// decrease, since the library by itself takes such ends for lengths.
    std::vector<RateInfo> ratesInUse() const;
};

} // namespace OrvComtradeIntake
