#pragma once

#include "Cfg.h"
#include "OrvComtradeExport.h"

#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeLib {

/// One instant of a recording, decoded from one line or record of the data file (IEEE C37.111-1999, 6.4 and 6.6).
class ORVCOMTRADE_API Sample {
public:
    /// An empty sample that decodes by `configuration`, which must outlive it and stay as it is.
    explicit Sample(const Cfg& configuration);
    ~Sample();

    /// Fills a new sample from one line of an ASCII data file, without its line feed. Returns false if the line lacks a
    /// field or memory runs out; the sample may then have part of its values.
    bool load(const std::string& line, unsigned long sampleIndex);

    /// The same for a string literal, which some compilers would otherwise take for a binary record.
    bool load(const char* line, unsigned long sampleIndex);

    /// Fills a new sample from one binary record of `cfg.recordLength` bytes. Any bytes can be decoded. Returns false
    /// if memory runs out or the configuration lacks a channel record.
    bool load(char* record, unsigned long sampleIndex);

    unsigned long index = 0;          ///< 0-based position in the data file; not the sample number written there
    double time = 0.0;                ///< seconds
    std::vector<double> analogValues; ///< secondary values in base units, in the order of the analog channels
    std::vector<bool> binaryValues;   ///< status bits, in the order of the status channels
    const Cfg& cfg;                   ///< what the sample is decoded by, not owned

private:
    bool _loadLine(std::string_view line, unsigned long sampleIndex);
    double _getTime(unsigned int timestamp, unsigned long sampleIndex);
    bool _loadAnalogChannels(char* record);
    double _getAnalogChannelValue(char* record, unsigned int channel);
    double _getDoubleChannelValue(char* record, unsigned int channel);
    bool _loadBinaryChannels(char* record);
    void _loadBinaryChannelsGroup(char* record, unsigned int group);
};

} // namespace OrvComtradeLib
