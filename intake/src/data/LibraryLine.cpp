#include "data/LibraryLine.h"

#include "Sample.h"
#include "files/LibraryCall.h"
#include "src/data/SampleClock.h"

#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

namespace {

bool isSameStamp(double time, const AsciiSample& meant) {
    const bool fits = meant.stamp && !meant.exactStamp && *meant.stamp >= 0 && *meant.stamp <= UINT32_MAX;
    return fits && time == OrvComtradeLib::stampTime(static_cast<std::uint32_t>(*meant.stamp), 1.0);
}

bool isSameValue(double value, const AnalogField& meant) {
    return meant.value.isInteger() && value == static_cast<double>(meant.value.scaled(0));
}

} // namespace

LibraryLine::LibraryLine(const DataLayout& layout) {
    _cfg.analogChannelCount = static_cast<int>(layout.analogs);
    _cfg.binaryChannelCount = static_cast<int>(layout.statuses);
    _cfg.totalChannelCount = _cfg.analogChannelCount + _cfg.binaryChannelCount;
    const OrvComtradeLib::AnalogChannelConfig plain(0, false, 1999);
    _cfg.analogChannelConfigs.assign(layout.analogs, plain);
    _cfg.samplingRateKnown = false;
}

bool LibraryLine::reads(std::string_view line, bool isStamped, const AsciiSample& meant) const {
    if (meant.kind != LineKind::Whole) {
        return false;
    }
    OrvComtradeLib::Sample sample(_cfg);
    const std::string text(line);
    const LibraryCall call;
    const bool isLoaded = sample.load(text, 0);
    call.check(isLoaded, {});
    if (!isLoaded || sample.analogValues.size() != meant.analog.size() ||
        sample.binaryValues.size() != meant.status.size() || (isStamped && !isSameStamp(sample.time, meant))) {
        return false;
    }
    for (std::size_t i = 0; i < meant.analog.size(); ++i) {
        if (!isSameValue(sample.analogValues[i], meant.analog[i])) {
            return false;
        }
    }
    for (std::size_t i = 0; i < meant.status.size(); ++i) {
        if (sample.binaryValues[i] != (meant.status[i] == '1')) {
            return false;
        }
    }
    return true;
}

} // namespace OrvComtradeIntake
