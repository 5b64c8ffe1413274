// The whole input is one channel line, read as an analog and as a status line of each revision.

#include "AnalogChannelConfig.h"
#include "BinaryChannelConfig.h"
#include "support/check.h"
#include "support/reference.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using OrvComtradeLib::AnalogChannelConfig;
using OrvComtradeLib::BinaryChannelConfig;

struct AnalogLine {
    double a = 0.0, b = 0.0, skew = 0.0, min = 0.0, max = 0.0, primary = 1.0, secondary = 1.0, unitMultiplier = 1.0;
    bool secondaryValues = true;
};

std::optional<AnalogLine> analogLine(const std::vector<std::string>& fields, int year) {
    if (fields.size() < 10) {
        return std::nullopt;
    }
    AnalogLine line;
    double* const numbers[] = {&line.a, &line.b, &line.skew, &line.min, &line.max};
    for (std::size_t i = 0; i < 5; ++i) {
        const std::optional<double> value = fuzz::numberIn(fields[5 + i]);
        if (!value) {
            return std::nullopt;
        }
        *numbers[i] = *value;
    }
    line.skew = line.skew * 0.000001;
    const std::string& unit = fields[4];
    if (unit.size() > 1) {
        const char prefix = unit[0];
        line.unitMultiplier = prefix == 'm'                      ? 0.001
                              : (prefix == 'k' || prefix == 'K') ? 1000.0
                              : prefix == 'M'                    ? 1000000.0
                                                                 : 1.0;
    }
    if (year >= 1999 && fields.size() > 12) {
        const std::optional<double> primary = fuzz::numberIn(fields[10]);
        const std::optional<double> secondary = fuzz::numberIn(fields[11]);
        if (!primary || !secondary) {
            return std::nullopt;
        }
        line.primary = *primary;
        line.secondary = *secondary;
        line.secondaryValues = fields[12].rfind('S', 0) == 0 || fields[12].rfind('s', 0) == 0;
        if (!line.secondaryValues) {
            line.a = line.secondary / line.primary * line.a;
        }
    }
    return line;
}

template <class Record> std::optional<Record> parsed(int position, const std::string& line, int year) {
    try {
        return Record(position, line, year);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

void checkAnalog(const std::string& line, const std::vector<std::string>& fields, int year) {
    const std::optional<AnalogChannelConfig> record = parsed<AnalogChannelConfig>(7, line, year);
    const std::optional<AnalogLine> expected = analogLine(fields, year);
    FUZZ_CHECK(record.has_value() == expected.has_value());
    if (!record) {
        return;
    }
    FUZZ_CHECK(record->index == 7 && record->channelId == fields[1] && record->phase == fields[2]);
    FUZZ_CHECK(record->circuitComponent == fields[3] && record->unit == fields[4]);
    FUZZ_CHECK(fuzz::same(record->a, expected->a) && fuzz::same(record->b, expected->b));
    FUZZ_CHECK(fuzz::same(record->skew, expected->skew) &&
               fuzz::same(record->unitMultiplier, expected->unitMultiplier));
    FUZZ_CHECK(fuzz::same(record->min, expected->min) && fuzz::same(record->max, expected->max));
    FUZZ_CHECK(fuzz::same(record->primary, expected->primary) && fuzz::same(record->secondary, expected->secondary));
    FUZZ_CHECK(record->secondaryValues == expected->secondaryValues);
    FUZZ_CHECK(record->name() == fields[1] + "," + fields[2] + "," + fields[3] + "," + fields[4]);
    std::string info = "8," + fields[1] + "," + fields[2] + "," + fields[3] + "," + fields[4];
    for (const double number : {expected->a, expected->b, expected->skew, expected->min, expected->max,
                                expected->primary, expected->secondary}) {
        info += ",";
        info += number != number ? "*" : std::to_string(number); // the sign of a not-a-number is anybody's guess
    }
    info += expected->secondaryValues ? ",S" : ",P";
    FUZZ_CHECK(info.find('*') != std::string::npos || record->channelInfo() == info);
    for (const double raw :
         {0.0, 1.0, -32768.0, 9.2e18, record->min, record->max, std::numeric_limits<double>::infinity()}) {
        FUZZ_CHECK(fuzz::same(record->GetRealValue(raw), (raw * record->a + record->b) * record->unitMultiplier));
    }
}

void checkStatus(const std::string& line, const std::vector<std::string>& fields, int year) {
    const std::optional<BinaryChannelConfig> record = parsed<BinaryChannelConfig>(0, line, year);
    const auto field = [&fields](std::size_t number) {
        return number < fields.size() ? fields[number] : std::string();
    };
    const bool recent = year >= 1999;
    std::optional<int> normal = 0;
    if (!recent || fields.size() > 4) {
        normal = fuzz::smallIntegerIn(field(recent ? 4 : 2));
    }
    const bool accepted = fields.size() >= (recent ? 2U : 3U) && normal.has_value();
    FUZZ_CHECK(record.has_value() == accepted);
    if (!record) {
        return;
    }
    FUZZ_CHECK(record->index == 0 && record->channelId == fields[1] && record->normalState == *normal);
    FUZZ_CHECK(record->phase == (recent ? field(2) : "") && record->circuitComponent == (recent ? field(3) : ""));
    FUZZ_CHECK(record->name() == record->channelId + "," + record->circuitComponent);
    FUZZ_CHECK(record->channelInfo() == "1," + fields[1] + "," + record->phase + "," + record->circuitComponent + ",0");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string line(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> fields = fuzz::cut(line, ',');
    for (const int year : {1991, 1999, 2013}) {
        checkAnalog(line, fields, year);
        checkStatus(line, fields, year);
    }
    return 0;
}
