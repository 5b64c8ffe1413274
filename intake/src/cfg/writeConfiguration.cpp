#include "cfgWriting.h"
#include "dateTime.h"
#include "intakeMark.h"
#include "numbers.h"

#include <initializer_list>

namespace OrvComtradeIntake {

namespace {

std::string numberOf(std::size_t number) {
    return std::to_string(number);
}

void appendLine(std::string& cfg, std::initializer_list<std::string> fields) {
    const char* separator = "";
    for (const std::string& field : fields) {
        cfg += separator;
        cfg += field;
        separator = ",";
    }
    cfg += '\n';
}

void appendAnalogLine(std::string& cfg, const AnalogLine& channel, std::size_t number, bool isOldLayout) {
    appendLine(cfg,
               {numberOf(number), channel.id, channel.phase, channel.component, channel.unit, numberText(channel.a),
                numberText(channel.b), numberText(channel.skew), numberText(channel.min), numberText(channel.max)});
    if (isOldLayout) {
        return;
    }
    cfg.back() = ',';
    appendLine(cfg,
               {numberText(channel.primary), numberText(channel.secondary), channel.side == Side::Primary ? "P" : "S"});
}

void appendStatusLine(std::string& cfg, const StatusLine& channel, std::size_t number, bool isOldLayout) {
    const std::string state = std::to_string(channel.normalState);
    if (isOldLayout) {
        appendLine(cfg, {numberOf(number), channel.id, state});
    } else {
        appendLine(cfg, {numberOf(number), channel.id, channel.phase, channel.component, state});
    }
}

void appendChannels(std::string& cfg, const Configuration& configuration) {
    const bool isOldLayout = configuration.revision < 1999;
    for (std::size_t index = 0; index < configuration.analog.size(); ++index) {
        appendAnalogLine(cfg, configuration.analog[index], index + 1, isOldLayout);
    }
    for (std::size_t index = 0; index < configuration.status.size(); ++index) {
        appendStatusLine(cfg, configuration.status[index], index + 1, isOldLayout);
    }
}

// By the standard the number of rates is 0 where times are in the data, and one line follows.
void appendRates(std::string& cfg, const Configuration& configuration) {
    const std::vector<RateLine>& rates = configuration.rates;
    const bool isStamped = rates.empty() || (rates.size() == 1 && configuration.timesAreStamped());
    appendLine(cfg, {numberOf(isStamped ? 0 : rates.size())});
    if (rates.empty()) {
        appendLine(cfg, {"0", "0"});
    }
    for (const RateLine& line : rates) {
        appendLine(cfg, {isStamped ? "0" : numberText(line.rate), std::to_string(line.endSample)});
    }
}

void appendDates(std::string& cfg, const Configuration& configuration) {
    const DateOrder order = configuration.revision < 1999 ? DateOrder::MonthDay : DateOrder::DayMonth;
    for (const std::optional<Instant>& instant : {configuration.start, configuration.trigger}) {
        appendLine(cfg, {dateTimeText(instant.value_or(Instant{}), order, configuration.nanosecondStamps)});
    }
}

void appendTimeLines(std::string& cfg, const Configuration& configuration) {
    appendLine(cfg, {numberText(configuration.timeMultiplier)});
    const bool hasQuality = !configuration.timeQuality.empty() || !configuration.leapSecond.empty();
    if (hasQuality || !configuration.timeCode.empty() || !configuration.localCode.empty()) {
        appendLine(cfg, {configuration.timeCode, configuration.localCode});
    }
    if (hasQuality) {
        appendLine(cfg, {configuration.timeQuality, configuration.leapSecond});
    }
    if (configuration.ratesAreSettled && configuration.rates.size() > 1) {
        appendLine(cfg, {std::string(kIntakeMark), "1", std::string(kMarkOfLengths)});
    }
    if (configuration.stampsAreSettled) {
        appendLine(cfg, {std::string(kIntakeMark), "1", std::string(kMarkOfMicroseconds)});
    }
}

} // namespace

std::string writeConfiguration(const Configuration& configuration) {
    const std::size_t analog = configuration.analog.size();
    const std::size_t status = configuration.status.size();
    std::string cfg;
    appendLine(cfg, {configuration.station, configuration.recorder, std::to_string(configuration.revision)});
    appendLine(cfg, {numberOf(analog + status), numberOf(analog) + 'A', numberOf(status) + 'D'});
    appendChannels(cfg, configuration);
    appendLine(cfg, {numberText(configuration.lineFrequency)});
    appendRates(cfg, configuration);
    appendDates(cfg, configuration);
    appendLine(cfg, {typeWord(configuration.encoding)});
    appendTimeLines(cfg, configuration);
    return cfg;
}

} // namespace OrvComtradeIntake
