#include "AnalogChannelConfig.h"

#include "../util/splitInto.h"
#include "StringHelper.h"
#include "channelLine.h"
#include "scaling.h"

#include <cctype>
#include <stdexcept>

namespace OrvComtradeLib {

namespace {

constexpr double kSecondsPerMicrosecond = 0.000001;

bool isSecondary(const std::string& side) {
    return !side.empty() && std::toupper(static_cast<unsigned char>(side.front())) == 'S';
}

} // namespace

AnalogChannelConfig::AnalogChannelConfig(int position, bool flag, int revisionYear) {
    index = position;
    setMinMax(flag, revisionYear);
}

AnalogChannelConfig::AnalogChannelConfig(int position, const std::string& line, int revisionYear) {
    AnalogChannelConfig::load(position, firstFields(line, kAnalogFields), revisionYear);
}

AnalogChannelConfig::~AnalogChannelConfig() = default;

std::string AnalogChannelConfig::name() const {
    return StringHelper::join(',', {channelId, phase, circuitComponent, unit});
}

std::string AnalogChannelConfig::channelInfo() const {
    return StringHelper::join(',', {BaseChannelConfig::channelInfo(), unit, std::to_string(a), std::to_string(b),
                                    std::to_string(skew), std::to_string(min), std::to_string(max),
                                    std::to_string(primary), std::to_string(secondary), secondaryValues ? "S" : "P"});
}

void AnalogChannelConfig::load(int position, const std::vector<std::string>& fields, int revisionYear) {
    if (fields.size() < kAnalogFieldsWithoutRatio) {
        throw std::out_of_range("analog channel line");
    }
    BaseChannelConfig::load(position, fields, revisionYear);
    phase = fields[2];
    circuitComponent = fields[3];
    unit = fields[4];
    unitMultiplier = multiplicator(unit);
    a = std::stod(fields[5]);
    b = std::stod(fields[6]);
    skew = std::stod(fields[7]) * kSecondsPerMicrosecond;
    min = std::stod(fields[8]);
    max = std::stod(fields[9]);
    loadExtValues(fields, revisionYear);
}

void AnalogChannelConfig::loadExtValues(const std::vector<std::string>& fields, int revisionYear) {
    if (revisionYear <= 1998 || fields.size() < kAnalogFields) {
        secondaryValues = true;
        secondary = 1.0;
        primary = 1.0;
        return;
    }
    primary = std::stod(fields[10]);
    secondary = std::stod(fields[11]);
    secondaryValues = isSecondary(fields[12]);
    if (!secondaryValues) {
        // Deliberate: b stays as written, although it is a primary value as well.
        a = (secondary / primary) * a;
    }
}

double AnalogChannelConfig::multiplicator(std::string unitText) {
    if (unitText.size() < 2) {
        return 1.0;
    }
    // Deliberate: kilo is told in either case, milli and mega are not.
    switch (unitText.front()) {
    case 'm':
        return 0.001;
    case 'k':
    case 'K':
        return 1000.0;
    case 'M':
        return 1000000.0;
    default:
        return 1.0;
    }
}

void AnalogChannelConfig::setMinMax(bool flag, int revisionYear) {
    // Deliberate: exactly 1999; a 2013 file gets the wide range whatever the flag.
    const double limit = revisionYear == 1999 && !flag ? 32767.0 : 99999.0;
    min = -limit;
    max = limit;
}

double AnalogChannelConfig::GetRealValue(const double& raw) const {
    return scaled(raw, a, b, unitMultiplier);
}

} // namespace OrvComtradeLib
