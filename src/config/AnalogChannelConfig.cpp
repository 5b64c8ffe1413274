#include "AnalogChannelConfig.h"

#include "../data/digits.h"
#include "../util/splitInto.h"
#include "StringHelper.h"
#include "channelLine.h"
#include "scaling.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace OrvComtradeLib {

namespace {

constexpr double kSecondsPerMicrosecond = 0.000001;

constexpr std::size_t kMostDigits = 15; // of which a double holds any number

/// Most fields are a short integer and nothing else. std::stod gives the same number, at five times the cost.
double toDouble(std::string_view field) {
    const bool isNegative = !field.empty() && field.front() == '-';
    const std::string_view digits = field.substr(isNegative ? 1 : 0);
    if (digits.empty() || digits.size() > kMostDigits || !std::all_of(digits.begin(), digits.end(), isDigit)) {
        return std::stod(std::string(field));
    }
    std::int64_t magnitude = 0;
    for (const char digit : digits) {
        magnitude = 10 * magnitude + (digit - '0');
    }
    const auto number = static_cast<double>(magnitude);
    return isNegative ? -number : number; // -0.0 of "-0"
}

bool isSecondary(std::string_view side) {
    return !side.empty() && std::toupper(static_cast<unsigned char>(side.front())) == 'S';
}

} // namespace

AnalogChannelConfig::AnalogChannelConfig(int position, bool flag, int revisionYear) {
    index = position;
    setMinMax(flag, revisionYear);
}

AnalogChannelConfig::AnalogChannelConfig(int position, const std::string& line, int revisionYear) {
    loadFields(*this, position, firstFields(line, kAnalogFields), revisionYear);
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
    loadFields(*this, position, viewsOf(fields), revisionYear);
}

void AnalogChannelConfig::loadExtValues(const std::vector<std::string>& fields, int revisionYear) {
    loadExtFields(*this, viewsOf(fields), revisionYear);
}

void loadFields(AnalogChannelConfig& record, int position, const FieldViews& fields, int revisionYear) {
    if (fields.size() < kAnalogFieldsWithoutRatio) {
        throw std::out_of_range("analog channel line");
    }
    loadFields(record, position, fields);
    record.phase = fields[2];
    record.circuitComponent = fields[3];
    record.unit = fields[4];
    record.unitMultiplier = record.multiplicator(record.unit);
    record.a = toDouble(fields[5]);
    record.b = toDouble(fields[6]);
    record.skew = toDouble(fields[7]) * kSecondsPerMicrosecond;
    record.min = toDouble(fields[8]);
    record.max = toDouble(fields[9]);
    loadExtFields(record, fields, revisionYear);
}

void loadExtFields(AnalogChannelConfig& record, const FieldViews& fields, int revisionYear) {
    if (revisionYear <= 1998 || fields.size() < kAnalogFields) {
        record.secondaryValues = true;
        record.secondary = 1.0;
        record.primary = 1.0;
        return;
    }
    record.primary = toDouble(fields[10]);
    record.secondary = toDouble(fields[11]);
    record.secondaryValues = isSecondary(fields[12]);
    if (!record.secondaryValues) {
        // Deliberate: b stays as written, although it is a primary value as well.
        record.a = (record.secondary / record.primary) * record.a;
    }
}

double AnalogChannelConfig::multiplicator(std::string unitText) {
    if (unitText.size() < 2) {
        return 1.0;
    }
    // Deliberate: kilo is recognised in either case, milli and mega are not.
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
