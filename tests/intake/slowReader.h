#pragma once

// A second opinion on a recording: slow, plain, made from the text of IEEE C37.111 alone, without any code of the
// library or the intake. It does not judge the files: where they deviate from the standard, the caller says how
// (Facts).

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace slow {

enum class Side { Unknown, Primary, Secondary };
enum class Coding { Ascii, Binary, Binary32, Float32 };

/// What a person who looked into the files knows about them.
struct Facts {
    std::string textEncoding = "UTF-8"; ///< as iconv names it
    bool layout1991 = false;            ///< short channel lines, month before day, 999999 for a missing value
    bool monthFirst = false;            ///< month before day, whatever the layout
    bool endsAreLengths = false;        ///< the number of a rate's last sample counts from the rate's first
    std::size_t strayField = 0;         ///< 1-based field of the analog lines that the standard does not have; 0: none
    std::size_t samples = 0;            ///< so many samples; what is behind them is none
    std::size_t recordLength = 0;       ///< bytes from record to record; 0: as the standard has it
    bool triggerIsUnset = false;        ///< the date of the trigger is what the recorder writes for none
    bool nanosecondStamps = false;      ///< the unit of a time stamp is 1 ns
};

struct AnalogChannel {
    std::string id;
    std::string phase;
    std::string component;
    std::string unitAsWritten;
    std::string baseUnit;      ///< the unit without its prefix
    long double prefix = 1.0L; ///< what the prefix stands for
    long double a = 1.0L;
    long double b = 0.0L;
    long double skew = 0.0L; ///< seconds
    long double min = 0.0L;
    long double max = 0.0L;
    long double primary = 1.0L;
    long double secondary = 1.0L;
    Side side = Side::Unknown;
};

struct StatusChannel {
    std::string id;
    std::string phase;
    std::string component;
    int normalState = 0;
};

struct Rate {
    long double rate = 0.0L;
    std::size_t begin = 0;   ///< 0-based first sample
    std::size_t end = 0;     ///< 0-based sample behind the last
    long double time = 0.0L; ///< of the first sample
};

struct Sample {
    long double time = 0.0L; ///< seconds from the first sample
    std::vector<long double> raw;
    std::vector<bool> missing; ///< by analog channel
    std::vector<bool> status;
};

struct Recording {
    std::string station;
    std::string recorder;
    std::vector<AnalogChannel> analog;
    std::vector<StatusChannel> status;
    long double lineFrequency = 0.0L;
    std::vector<Rate> rates;
    std::optional<std::int64_t> start;   ///< nanoseconds since 1970
    std::optional<std::int64_t> trigger; ///< nanoseconds since 1970
    Coding coding = Coding::Ascii;
    long double timeMultiplier = 1.0L;
    std::size_t samplesDeclared = 0;
    std::vector<Sample> samples;
};

/// A value in the base unit, and the size of the terms of which it is the sum.
struct Value {
    long double value = 0.0L;
    long double terms = 0.0L;
};

/// On the side asked for; Unknown: as recorded. A channel whose line declares no side stays as recorded.
Value valueOf(const AnalogChannel& channel, long double raw, Side side);

/// Decodes a configuration and its data. Throws `std::runtime_error` where the bytes are not as the standard and the
/// facts say.
Recording read(const std::string& cfg, const std::string& dat, const Facts& facts);

struct Sections {
    std::string cfg;
    std::string dat;
};

/// The two sections of a `.cff`; data in base64, a string in quotation marks on each line, are decoded.
Sections sectionsOf(const std::string& cff);

} // namespace slow
