#pragma once

#include "AnalogChannelConfig.h"
#include "BinaryChannelConfig.h"
#include "Enums.h"
#include "OrvComtradeExport.h"
#include "SamplingRate.h"

#include <fstream>
#include <string>
#include <vector>

namespace OrvComtradeLib {

/// The configuration file of a recording (IEEE C37.111-1999, clause 5), and the time base that it implies.
///
/// The data reader and the channel views refer to a loaded `Cfg`: do not destroy or move it while they are used. Do not
/// use an object while another thread loads it.
class ORVCOMTRADE_API Cfg {
public:
    /// An object with the default values written at the members.
    Cfg();
    ~Cfg();

    /// Reads the configuration file at a UTF-8 path. Returns `CfgLoaded`, `CfgFileNotFound` or `CfgLoadError`. Throws
    /// nothing derived from `std::exception`.
    ///
    /// Nothing is reset first: members that the file does not set keep their values, and `samplingRates` grows with
    /// every load. After `CfgLoadError` the object may be partly filled and must not be used.
    int load(const std::string& path);

    /// Time in seconds of the sample at a 0-based position, by the sampling rates and `timeMultiplier`; -1.0 without
    /// rates, or if a rate before that of the sample is not positive. A -1.0 for the rate of the sample itself is added
    /// and multiplied like a duration: check `samplingRateKnown` first.
    double timeFromSampleIndex(unsigned long sampleIndex) const;

    std::string stationName = "Station1"; ///< station, in the bytes of the file
    std::string recorderId;               ///< recording device, in the bytes of the file
    int revisionYear = 1999;              ///< year of the standard that the file follows

    int totalChannelCount = 0;  ///< number of channels; after a good load the sum of the next two
    int analogChannelCount = 0; ///< number of analog channels
    int binaryChannelCount = 0; ///< number of status channels

    double lineFrequency = 50.0; ///< nominal frequency of the network, Hz

    std::vector<AnalogChannelConfig> analogChannelConfigs; ///< one record per analog channel line, in file order
    std::vector<BinaryChannelConfig> binaryChannelConfigs; ///< one record per status channel line, in file order

    std::vector<SamplingRate> samplingRates; ///< one entry per sampling-rate line, of every load so far
    unsigned long lastSampleNumber = 0;      ///< number of samples: `endSample` of the last sampling rate
    bool samplingRateKnown = true;           ///< false when a rate is zero; times then come from the data file

    Enums::DataFileType dataFileType = Enums::Ascii; ///< encoding of the data file

    /// @name Layout of a binary data record
    /// An ASCII data file leaves these five as they were.
    /// @{
    unsigned int analogValueLength = 2;  ///< bytes of one analog value: 2 or 4
    unsigned int analogValuesLength = 0; ///< bytes of all analog values
    unsigned int statusWordCount = 0;    ///< number of 16-bit status words
    unsigned int statusWordsLength = 0;  ///< bytes of all status words
    unsigned int recordLength = 0;       ///< bytes of the whole record
    /// @}

    double timeMultiplier = 1.0; ///< factor of every time, from the time multiplier line
    std::string currentLine;     ///< the line read last
    double duration = 0.0;       ///< time of the last sample in seconds, when every sampling rate is known

private:
    bool _loadSubstationData(std::ifstream& in);
    bool _loadCounOfChannels(std::ifstream& in);
    bool _loadAnalogChannelsInformation(std::ifstream& in);
    bool _loadBinaryChannelsInformation(std::ifstream& in);
    bool _loadFreqInformation(std::ifstream& in);
    bool _loadSampleRatesInformation(std::ifstream& in);
    bool _loadDateTimes(std::ifstream& in);
    bool _loadDataFileType(std::ifstream& in);
    void _setTimeProcessTime(std::ifstream& in);

    bool _isExistZeroFreqSample(const std::vector<SamplingRate>& rates);
    unsigned int _getAnalogChannelLenghtInDatFile(Enums::DataFileType type) const;
    void _setBinaryDatFileChannelLenght(Enums::DataFileType type);
};

} // namespace OrvComtradeLib
