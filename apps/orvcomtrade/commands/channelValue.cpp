#include "commands/channelValue.h"

#include "input/channelNames.h"
#include "input/skewSeconds.h"
#include "output/sideName.h"

#include <string>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::RateInfo;
using OrvComtradeIntake::StatusInfo;

namespace {

template <class Info> Json channelValue(std::size_t position, const std::string& name, const Info& channel) {
    Json value = Json::object();
    value["number"] = position + 1;
    value["name"] = name;
    value["id"] = channel.id;
    value["phase"] = channel.phase;
    value["component"] = channel.component;
    return value;
}

} // namespace

Json analogNameValue(const AnalogInfo& channel, std::size_t position) {
    return channelValue(position, analogName(channel, channel.unit), channel);
}

Json analogChannelValue(const Recording& recording, std::size_t position) {
    const AnalogInfo& channel = recording.header.analog[position];
    const AnalogValues& values = recording.analog.at(position);
    Json value = analogNameValue(channel, position);
    value["unit"] = channel.unit;
    value["side"] = sideName(channel.side);
    value["a"] = channel.a;
    value["b"] = channel.b;
    value["skew"] = skewSeconds(channel);
    value["min"] = channel.min;
    value["max"] = channel.max;
    value["primary"] = channel.primary;
    value["secondary"] = channel.secondary;
    value["valueUnit"] = values.unit;
    value["valueSide"] = sideName(values.side);
    return value;
}

Json statusChannelValue(const StatusInfo& channel, std::size_t position) {
    Json value = channelValue(position, statusName(channel), channel);
    value["normal"] = channel.normalState;
    return value;
}

void setRecorded(Json& line, const Header& header, std::optional<double> duration) {
    line["station"] = header.station;
    line["recorder"] = header.recorder;
    line["revision"] = header.revision;
    line["dataType"] = typeWord(header.dataType);
    line["samplingRateKnown"] = !header.timesAreStamped();
    line["samplingRates"] = ratesValue(header);
    line["lineFrequency"] = header.lineFrequency;
    if (duration) {
        line["duration"] = *duration;
    }
    line["samples"] = header.samples;
    line["samplesDeclared"] = header.samplesDeclared;
    line["encoding"] = textValue(header.encoding);
    setTimes(line, header);
}

void setTimes(Json& line, const Header& header) {
    line["start"] = instantValue(header.start);
    line["trigger"] = instantValue(header.trigger);
    line["timeCode"] = textValue(header.timeCode);
    line["localCode"] = textValue(header.localCode);
    line["timeQuality"] = textValue(header.timeQuality);
    line["leapSecond"] = textValue(header.leapSecond);
}

Json ratesValue(const Header& header) {
    Json rates = Json::array();
    for (const RateInfo& entry : header.rates) {
        rates.push_back({{"rate", entry.rate}, {"endSample", entry.endSample}});
    }
    return rates;
}
