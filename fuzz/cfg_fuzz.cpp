// The whole input is a configuration file, loaded into two fresh objects and then once more into the first.

#include "Cfg.h"
#include "support/ScratchFolder.h"
#include "support/check.h"
#include "support/reference.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using OrvComtradeLib::AnalogChannelConfig;
using OrvComtradeLib::BinaryChannelConfig;
using OrvComtradeLib::Cfg;
using OrvComtradeLib::SamplingRate;
namespace Enums = OrvComtradeLib::Enums;

std::string lowered(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(character >= 'A' && character <= 'Z' ? character + 32 : character);
    }
    return text;
}

/// What holds for every configuration that was accepted by a fresh object.
void checkAccepted(const Cfg& cfg, const std::vector<std::string>& lines) {
    const auto line = [&lines](std::size_t number) { return number < lines.size() ? lines[number] : std::string(); };
    const std::vector<std::string> station = fuzz::cut(line(0), ',');
    FUZZ_CHECK(cfg.stationName == station.at(0));
    FUZZ_CHECK(cfg.recorderId == (station.size() > 1 ? station[1] : ""));
    FUZZ_CHECK(cfg.revisionYear == (station.size() > 2 ? fuzz::smallIntegerIn(station[2]).value() : 1999));

    const std::vector<std::string> counts = fuzz::cut(line(1), ',');
    FUZZ_CHECK(cfg.totalChannelCount == fuzz::smallIntegerIn(counts.at(0)).value() && cfg.totalChannelCount > 0);
    FUZZ_CHECK(cfg.analogChannelCount == fuzz::smallIntegerIn(counts.at(1)).value());
    FUZZ_CHECK(cfg.binaryChannelCount == fuzz::smallIntegerIn(counts.at(2)).value());
    FUZZ_CHECK(cfg.analogChannelConfigs.size() == static_cast<std::size_t>(cfg.analogChannelCount));
    FUZZ_CHECK(cfg.binaryChannelConfigs.size() == static_cast<std::size_t>(cfg.binaryChannelCount));
    const auto total = static_cast<std::size_t>(cfg.totalChannelCount);
    FUZZ_CHECK(cfg.analogChannelConfigs.size() + cfg.binaryChannelConfigs.size() == total);
    for (std::size_t i = 0; i < cfg.analogChannelConfigs.size(); ++i) {
        FUZZ_CHECK(cfg.analogChannelConfigs[i].index == static_cast<int>(i));
    }
    for (std::size_t i = 0; i < cfg.binaryChannelConfigs.size(); ++i) {
        FUZZ_CHECK(cfg.binaryChannelConfigs[i].index == static_cast<int>(i));
    }

    FUZZ_CHECK(fuzz::same(cfg.lineFrequency, fuzz::numberIn(line(2 + total)).value()));
    const int declared = fuzz::smallIntegerIn(line(3 + total)).value();
    FUZZ_CHECK(declared >= 0);
    const auto rates = static_cast<std::size_t>(std::max(declared, 1));
    FUZZ_CHECK(cfg.samplingRates.size() == rates);
    bool known = true;
    for (std::size_t i = 0; i < rates; ++i) {
        const std::vector<std::string> fields = fuzz::cut(line(4 + total + i), ',');
        FUZZ_CHECK(fuzz::same(cfg.samplingRates[i].rate, fuzz::numberIn(fields.at(0)).value()));
        const long end = fuzz::integerIn(fields.at(1)).value();
        FUZZ_CHECK(cfg.samplingRates[i].endSample == static_cast<std::uint64_t>(end));
        known = known && !(cfg.samplingRates[i].rate < 0.000001);
    }
    FUZZ_CHECK(cfg.samplingRateKnown == known);
    FUZZ_CHECK(cfg.lastSampleNumber == cfg.samplingRates.back().endSample);

    FUZZ_CHECK(!line(4 + total + rates).empty() && !line(5 + total + rates).empty());
    const std::string word = lowered(line(6 + total + rates));
    FUZZ_CHECK(!word.empty());
    FUZZ_CHECK(cfg.dataFileType == (word == "binary"    ? Enums::Binary
                                    : word == "float32" ? Enums::Float32
                                                        : Enums::Ascii));
    const auto analogs = static_cast<std::uint32_t>(cfg.analogChannelCount);
    const auto words = (static_cast<std::uint32_t>(cfg.binaryChannelCount) + 15) / 16;
    const bool ascii = cfg.dataFileType == Enums::Ascii;
    const std::uint32_t width = cfg.dataFileType == Enums::Float32 ? 4 : 2;
    FUZZ_CHECK(cfg.analogValueLength == width);
    FUZZ_CHECK(cfg.analogValuesLength == (ascii ? 0 : width * analogs));
    FUZZ_CHECK(cfg.statusWordCount == (ascii ? 0 : words));
    FUZZ_CHECK(cfg.statusWordsLength == (ascii ? 0 : 2 * words));
    FUZZ_CHECK(cfg.recordLength == (ascii ? 0 : 8 + width * analogs + 2 * words));

    const bool multiplierFollows = lines.size() > 7 + total + rates;
    const double multiplier = multiplierFollows ? fuzz::numberIn(line(7 + total + rates)).value() : 1.0;
    FUZZ_CHECK(fuzz::same(cfg.timeMultiplier, multiplier));
    const double duration = fuzz::slowTime(cfg.samplingRates, multiplier, cfg.lastSampleNumber - 1);
    FUZZ_CHECK(fuzz::same(cfg.duration, known ? duration : 0.0));
}

void checkSame(const AnalogChannelConfig& left, const AnalogChannelConfig& right) {
    FUZZ_CHECK(left.index == right.index && left.name() == right.name());
    FUZZ_CHECK(fuzz::same(left.a, right.a) && fuzz::same(left.b, right.b) && fuzz::same(left.skew, right.skew));
    FUZZ_CHECK(fuzz::same(left.min, right.min) && fuzz::same(left.max, right.max));
    FUZZ_CHECK(fuzz::same(left.primary, right.primary) && fuzz::same(left.secondary, right.secondary));
    FUZZ_CHECK(fuzz::same(left.unitMultiplier, right.unitMultiplier) && left.secondaryValues == right.secondaryValues);
}

/// Everything but what grows with every load: the rates and what follows from all of them.
void checkSame(const Cfg& left, const Cfg& right) {
    FUZZ_CHECK(left.stationName == right.stationName && left.recorderId == right.recorderId);
    FUZZ_CHECK(left.revisionYear == right.revisionYear && left.totalChannelCount == right.totalChannelCount);
    FUZZ_CHECK(left.analogChannelCount == right.analogChannelCount);
    FUZZ_CHECK(left.binaryChannelCount == right.binaryChannelCount);
    FUZZ_CHECK(fuzz::same(left.lineFrequency, right.lineFrequency));
    FUZZ_CHECK(left.analogChannelConfigs.size() == right.analogChannelConfigs.size());
    for (std::size_t i = 0; i < left.analogChannelConfigs.size(); ++i) {
        checkSame(left.analogChannelConfigs[i], right.analogChannelConfigs[i]);
    }
    FUZZ_CHECK(left.binaryChannelConfigs.size() == right.binaryChannelConfigs.size());
    for (std::size_t i = 0; i < left.binaryChannelConfigs.size(); ++i) {
        FUZZ_CHECK(left.binaryChannelConfigs[i].channelInfo() == right.binaryChannelConfigs[i].channelInfo());
        FUZZ_CHECK(left.binaryChannelConfigs[i].normalState == right.binaryChannelConfigs[i].normalState);
    }
    FUZZ_CHECK(left.lastSampleNumber == right.lastSampleNumber && left.dataFileType == right.dataFileType);
    FUZZ_CHECK(left.analogValueLength == right.analogValueLength && left.statusWordCount == right.statusWordCount);
    FUZZ_CHECK(left.analogValuesLength == right.analogValuesLength && left.recordLength == right.recordLength);
    FUZZ_CHECK(left.statusWordsLength == right.statusWordsLength && left.currentLine == right.currentLine);
    FUZZ_CHECK(fuzz::same(left.timeMultiplier, right.timeMultiplier));
}

bool sameRates(std::vector<SamplingRate>::const_iterator left, const std::vector<SamplingRate>& right) {
    return std::all_of(right.begin(), right.end(), [&left](const SamplingRate& entry) {
        const SamplingRate& other = *left++;
        return fuzz::same(entry.rate, other.rate) && entry.endSample == other.endSample;
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string path = folder.write("a.cfg", text);

    Cfg cfg;
    const int result = cfg.load(path);
    FUZZ_CHECK(result == Enums::CfgLoaded || result == Enums::CfgLoadError);
    FUZZ_CHECK(cfg.analogChannelConfigs.size() + cfg.binaryChannelConfigs.size() + cfg.samplingRates.size() <= size);
    if (result == Enums::CfgLoaded) {
        checkAccepted(cfg, fuzz::cut(text, '\n'));
    }

    Cfg other;
    FUZZ_CHECK(other.load(path) == result);
    checkSame(cfg, other);
    FUZZ_CHECK(cfg.samplingRates.size() == other.samplingRates.size());
    FUZZ_CHECK(sameRates(cfg.samplingRates.begin(), other.samplingRates));
    FUZZ_CHECK(cfg.samplingRateKnown == other.samplingRateKnown && fuzz::same(cfg.duration, other.duration));

    FUZZ_CHECK(cfg.load(path) == result);
    checkSame(cfg, other);
    FUZZ_CHECK(cfg.samplingRates.size() == 2 * other.samplingRates.size());
    FUZZ_CHECK(sameRates(cfg.samplingRates.begin(), other.samplingRates));
    FUZZ_CHECK(sameRates(cfg.samplingRates.end() - static_cast<std::ptrdiff_t>(other.samplingRates.size()),
                         other.samplingRates));
    FUZZ_CHECK(cfg.samplingRateKnown == other.samplingRateKnown);
    const double duration = fuzz::slowTime(cfg.samplingRates, cfg.timeMultiplier, cfg.lastSampleNumber - 1);
    FUZZ_CHECK(result != Enums::CfgLoaded || fuzz::same(cfg.duration, cfg.samplingRateKnown ? duration : 0.0));
    return 0;
}
