#include "Cfg.h"

#include "../data/recordLayout.h"
#include "../toUtf8/isAscii.h"
#include "../util/splitInto.h"
#include "Converters.h"
#include "FilesHelper.h"
#include "StringHelper.h"
#include "channelLine.h"
#include "toUtf8.h"

#include <OrvCommon.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <stdexcept>

namespace OrvComtradeLib {

namespace {

constexpr double kZeroRateLimit = 0.000001; // rates below count as zero

/// Reads the next line as it stands: a carriage return stays at its end. Deliberate: nothing is trimmed anywhere.
bool readLine(std::ifstream& in, std::string& line) {
    return std::getline(in, line) && !line.empty();
}

bool hasRateFields(const std::string& line) {
    const std::size_t comma = line.find(',');
    return comma != std::string::npos && comma + 1 < line.size();
}

constexpr unsigned int kUsualLineLength = 16; // bytes; hardly a channel line is shorter

/// Makes room for `count` records, as far as the rest of the file can hold their lines.
template <class Record> void reserveRecords(std::ifstream& in, unsigned int count, std::vector<Record>& records) {
    const std::streamoff position = in.tellg();
    if (position >= 0) {
        const std::int64_t length = std::max<std::int64_t>(FilesHelper::fileLenght(in) - position, 0);
        records.reserve(std::min<std::size_t>(count, static_cast<std::size_t>(length) / kUsualLineLength));
    }
}

/// Fields that a channel line may have; what follows is not read.
std::size_t mostFields(const std::vector<AnalogChannelConfig>& /*records*/) {
    return kAnalogFields;
}

std::size_t mostFields(const std::vector<BinaryChannelConfig>& /*records*/) {
    return kStatusFields;
}

void addDefault(std::vector<AnalogChannelConfig>& records) {
    records.emplace_back(0, false, 0);
}

void addDefault(std::vector<BinaryChannelConfig>& records) {
    records.emplace_back();
}

/// Reads one channel line per record; the count is compared as an unsigned number.
template <class Record>
bool readChannels(std::ifstream& in, std::string& line, int count, int revisionYear, std::vector<Record>& records) {
    records.clear();
    reserveRecords(in, static_cast<unsigned int>(count), records);
    FieldViews fields;
    for (unsigned int i = 0; i < static_cast<unsigned int>(count); ++i) {
        if (!readLine(in, line)) {
            return false;
        }
        if (!toUtf8::isAscii(line)) {
            line = toUtf8::detectAndConvert(line);
        }
        splitInto(line, ',', mostFields(records), fields);
        addDefault(records);
        try {
            loadFields(records.back(), static_cast<int>(i), fields, revisionYear);
        } catch (...) {
            records.pop_back();
            throw;
        }
    }
    return true;
}

} // namespace

Cfg::Cfg() = default;

Cfg::~Cfg() = default;

// Deliberate: nothing is reset before a load.
int Cfg::load(const std::string& path) {
    try {
        if (!Orv::fileExist(path)) {
            return Enums::CfgFileNotFound;
        }
        std::ifstream in = Orv::openInputFileUTF8Name(path, std::ios_base::in);
        if (!in.is_open()) {
            return Enums::CfgLoadError;
        }
        const bool accepted = _loadSubstationData(in) && _loadCounOfChannels(in) &&
                              _loadAnalogChannelsInformation(in) && _loadBinaryChannelsInformation(in) &&
                              _loadFreqInformation(in) && _loadSampleRatesInformation(in) && _loadDateTimes(in) &&
                              _loadDataFileType(in);
        // Deliberate: after a failed step too, with whatever line follows.
        _setTimeProcessTime(in);
        return accepted ? Enums::CfgLoaded : Enums::CfgLoadError;
    } catch (const std::exception&) {
        return Enums::CfgLoadError;
    }
}

double Cfg::timeFromSampleIndex(unsigned long sampleIndex) const {
    if (samplingRates.empty()) {
        return -1.0;
    }
    double accumulated = 0.0;
    // Deliberate: each endSample counts as the length of its own segment, although the file numbers samples throughout.
    unsigned long remaining = sampleIndex;
    auto current = samplingRates.begin();
    while (current->endSample <= remaining) {
        const double segment = current->getDuration(current->endSample);
        if (segment < 0.0) {
            return -1.0;
        }
        accumulated += segment;
        remaining -= current->endSample;
        if (current + 1 == samplingRates.end()) {
            break;
        }
        ++current;
    }
    // Deliberate: -1.0 of a segment without a rate is added like a duration, and the multiplier of the time stamps
    // counts.
    return (current->getDuration(remaining) + accumulated) * timeMultiplier;
}

bool Cfg::_loadSubstationData(std::ifstream& in) {
    if (!readLine(in, currentLine)) {
        return false;
    }
    // Deliberate: the station line keeps the bytes of the file; only channel lines are converted to UTF-8.
    const FieldViews fields = firstFields(currentLine, 3);
    stationName = fields[0];
    if (fields.size() > 1) {
        recorderId = fields[1];
    }
    if (fields.size() > 2) {
        revisionYear = StringHelper::toInt(std::string(fields[2]));
    }
    return true;
}

bool Cfg::_loadCounOfChannels(std::ifstream& in) {
    if (!readLine(in, currentLine)) {
        return false;
    }
    const FieldViews fields = firstFields(currentLine, 3);
    totalChannelCount = std::stoi(std::string(fields[0]));
    if (totalChannelCount == 0 || fields.size() < 3) {
        return false;
    }
    // The conversions stop at the suffix letters; deliberately, nobody looks whether they are A and D.
    analogChannelCount = std::stoi(std::string(fields[1]));
    binaryChannelCount = std::stoi(std::string(fields[2]));
    return static_cast<long>(analogChannelCount) + binaryChannelCount == totalChannelCount;
}

bool Cfg::_loadAnalogChannelsInformation(std::ifstream& in) {
    return readChannels(in, currentLine, analogChannelCount, revisionYear, analogChannelConfigs);
}

bool Cfg::_loadBinaryChannelsInformation(std::ifstream& in) {
    return readChannels(in, currentLine, binaryChannelCount, revisionYear, binaryChannelConfigs);
}

bool Cfg::_loadFreqInformation(std::ifstream& in) {
    if (!readLine(in, currentLine)) {
        return false;
    }
    lineFrequency = std::stod(currentLine);
    return true;
}

bool Cfg::_loadSampleRatesInformation(std::ifstream& in) {
    lastSampleNumber = 0;
    duration = 0.0;
    if (!readLine(in, currentLine)) {
        return false;
    }
    const int count = std::stoi(currentLine);
    if (count < 0) {
        throw std::length_error("vector::reserve");
    }
    // A count of 0 stands for a recording without a fixed rate; its one line holds rate 0 and the last sample number.
    // Deliberate: the rates of an earlier load stay in front. No room is reserved for a count that nothing proves.
    for (int i = 0; i < std::max(count, 1); ++i) {
        if (!readLine(in, currentLine) || !hasRateFields(currentLine)) {
            return false;
        }
        samplingRates.emplace_back(currentLine);
    }
    samplingRateKnown = !_isExistZeroFreqSample(samplingRates);
    lastSampleNumber = samplingRates.back().endSample;
    return true;
}

bool Cfg::_loadDateTimes(std::ifstream& in) {
    return readLine(in, currentLine) && readLine(in, currentLine);
}

bool Cfg::_loadDataFileType(std::ifstream& in) {
    if (!readLine(in, currentLine)) {
        return false;
    }
    dataFileType = Converters::toDataFileType(currentLine);
    if (dataFileType != Enums::Ascii) {
        _setBinaryDatFileChannelLenght(dataFileType);
    }
    return true;
}

void Cfg::_setTimeProcessTime(std::ifstream& in) {
    if (!in.eof()) {
        const bool read = static_cast<bool>(std::getline(in, currentLine));
        // Deliberate: a missing line means 1, while a blank one is an error of the conversion.
        timeMultiplier = !read && currentLine.empty() ? 1.0 : std::stod(currentLine);
    }
    if (samplingRateKnown) {
        duration = timeFromSampleIndex(lastSampleNumber - 1);
    }
}

bool Cfg::_isExistZeroFreqSample(const std::vector<SamplingRate>& rates) {
    return std::any_of(rates.begin(), rates.end(),
                       [](const SamplingRate& entry) { return entry.rate < kZeroRateLimit; });
}

unsigned int Cfg::_getAnalogChannelLenghtInDatFile(Enums::DataFileType type) const {
    return type == Enums::Binary32 || type == Enums::Float32 ? 4 : 2;
}

// Deliberate: the stored type counts, not the argument.
void Cfg::_setBinaryDatFileChannelLenght(Enums::DataFileType /*type*/) {
    analogValueLength = _getAnalogChannelLenghtInDatFile(dataFileType);
    analogValuesLength = analogValueLength * static_cast<unsigned int>(analogChannelCount);
    statusWordCount = statusWords(static_cast<unsigned int>(binaryChannelCount));
    statusWordsLength = kStatusWordLength * statusWordCount;
    recordLength = analogValuesLength + statusWordsLength + kAnalogOffset;
}

} // namespace OrvComtradeLib
