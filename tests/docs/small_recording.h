// A recording of two analog and one status channel with three samples, to spoil on purpose.

#pragma once

#include <string>
#include <vector>

namespace small {

/// The lines of the configuration file, from 1.
enum Line {
    Station = 1,
    Counts,
    Voltage,
    Current,
    Status,
    Frequency,
    RateCount,
    Rate,
    Start,
    Trigger,
    Type,
    Multiplier,
};

inline std::vector<std::string> cfgLines() {
    return {
        "Station,Recorder,1999",
        "3,2A,1D",
        "1,UA,A,Bus,V,1,0,0,-32767,32767,1,1,S",
        "2,IA,A,Bus,A,1,0,0,-32767,32767,1,1,S",
        "1,Trip,,,0",
        "50",
        "1",
        "1000,3",
        "01/01/2026,00:00:00.000000",
        "01/01/2026,00:00:00.001000",
        "ASCII",
        "1",
    };
}

inline std::string asciiData() {
    return "1,0,10,1,0\n2,1000,20,2,1\n3,2000,30,3,0\n";
}

/// So many binary records of 14 zero bytes each: header, two 16-bit values, one status word.
inline std::string binaryData(unsigned int records) {
    return std::string(records * 14, '\0');
}

inline std::string joined(const std::vector<std::string>& lines, const char* lineEnd = "\n") {
    std::string text;
    for (const std::string& line : lines) {
        text += line + lineEnd;
    }
    return text;
}

} // namespace small
