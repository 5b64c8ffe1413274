#include "input/headerOf.h"

#include "Comtrade.h"
#include "toUtf8.h"

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::DataType;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::RateInfo;
using OrvComtradeIntake::Side;
using OrvComtradeIntake::StatusInfo;
using namespace OrvComtradeLib;

namespace {

constexpr double kMicrosecondsPerSecond = 1000000.0;
constexpr double kZeroRateLimit = 0.000001; // the library takes a lower rate for none

DataType typeOf(Enums::DataFileType type) {
    switch (type) {
    case Enums::Binary:
        return DataType::Binary;
    case Enums::Binary32:
        return DataType::Binary32;
    case Enums::Float32:
        return DataType::Float32;
    case Enums::Ascii:
        break;
    }
    return DataType::Ascii;
}

template <class Info> Info infoOf(const BaseChannelConfig& channel) {
    Info info;
    info.number = static_cast<std::uint64_t>(channel.index) + 1;
    info.id = channel.channelId;
    info.phase = channel.phase;
    info.component = channel.circuitComponent;
    return info;
}

AnalogInfo analogInfo(const AnalogChannelConfig& channel) {
    auto info = infoOf<AnalogInfo>(channel);
    info.unit = channel.unit;
    info.a = channel.a;
    info.b = channel.b;
    info.skew = channel.skew * kMicrosecondsPerSecond;
    info.min = channel.min;
    info.max = channel.max;
    info.primary = channel.primary;
    info.secondary = channel.secondary;
    info.side = channel.secondaryValues ? Side::Secondary : Side::Primary;
    return info;
}

StatusInfo statusInfo(const BinaryChannelConfig& channel) {
    auto info = infoOf<StatusInfo>(channel);
    info.normalState = channel.normalState;
    return info;
}

RateInfo rateInfo(const SamplingRate& rate) {
    return {rate.rate < kZeroRateLimit ? 0.0 : rate.rate, rate.endSample};
}

} // namespace

Header headerOf(const Comtrade& comtrade) {
    const Cfg& cfg = comtrade.cfg;
    Header header;
    header.station = toUtf8::detectAndConvert(cfg.stationName); // the library leaves both in the bytes of the file
    header.recorder = toUtf8::detectAndConvert(cfg.recorderId);
    header.revision = cfg.revisionYear;
    for (const AnalogChannelConfig& channel : cfg.analogChannelConfigs) {
        header.analog.push_back(analogInfo(channel));
    }
    for (const BinaryChannelConfig& channel : cfg.binaryChannelConfigs) {
        header.status.push_back(statusInfo(channel));
    }
    header.lineFrequency = cfg.lineFrequency;
    for (const SamplingRate& rate : cfg.samplingRates) {
        header.rates.push_back(rateInfo(rate));
    }
    header.dataType = typeOf(cfg.dataFileType);
    header.timeMultiplier = cfg.timeMultiplier;
    header.encoding.clear();
    header.samplesDeclared = cfg.lastSampleNumber;
    header.samples = comtrade.dat.samples.size();
    return header;
}
