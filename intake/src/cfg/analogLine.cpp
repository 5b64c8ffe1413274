#include "analogShape.h"
#include "cfgSteps.h"
#include "commaInText.h"

#include <cmath>
#include <limits>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kFields = 13;
constexpr std::size_t kSideField = 12;

void readTexts(const CfgLine& line, AnalogLine& channel) {
    const std::string_view number = line[0].text;
    if (!readCount(number)) {
        line.tell(0, "An", {Severity::Note, "field-malformed", "the channel's number", "", false});
    }
    channel.id = line.textOf(1, "ch_id");
    channel.phase = line.textOf(2, "ph");
    channel.component = line.textOf(3, "ccbm");
    channel.unit = line.textOf(4, "uu");
}

void readNumbers(const CfgLine& line, AnalogLine& channel) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN(); // fillRanges puts the encoding's there
    channel.a = line.numberOf(5, "a", 1.0, "1: the values are those of the data").precise;
    channel.b = line.numberOf(6, "b", 0.0, "0: without an offset").precise;
    channel.skew = line.numberOf(7, "skew", 0.0, "0").value;
    channel.min = line.numberOf(8, "min", none, "the least value of the encoding").value;
    channel.max = line.numberOf(9, "max", none, "the greatest value of the encoding").value;
}

bool hasRatio(const CfgLine& line) {
    return !line[10].text.empty() || !line[11].text.empty();
}

// The library takes a field that is not S for P, if it counts the field at all.
void tellNoSide(const CfgLine& line, const AnalogLine& channel) {
    const bool isTakenForPrimary = line.libraryCount() >= kFields && channel.primary != channel.secondary;
    line.tell(
        kSideField, "PS",
        {Severity::Warning, "side", "P or S", "taken for neither: the values are as recorded", isTakenForPrimary});
}

void readRatio(const CfgLine& line, AnalogLine& channel) {
    const bool isRead = line.libraryCount() >= kFields;
    if (!line.has(10)) {
        line.tell(10, "primary", {Severity::Warning, "field-missing", "the ratio and its side", "1 to 1", false});
        return;
    }
    channel.primary = line.numberOf(10, "primary", 1.0, "1", isRead).value;
    channel.secondary = line.numberOf(11, "secondary", 1.0, "1", isRead).value;
    const std::string_view side = line[kSideField].text;
    if (!isSide(side)) {
        tellNoSide(line, channel);
        return;
    }
    channel.side = side[0] == 'P' || side[0] == 'p' ? Side::Primary : Side::Secondary;
    if (line[kSideField].raw.front() != side.front() && channel.side == Side::Secondary) {
        line.tell(kSideField, "PS", {Severity::Warning, "blanks", "P or S without blanks", "blanks left out", true});
    }
}

struct Range {
    double min;
    double max;
};

Range rangeOf(DataEncoding encoding) {
    switch (encoding) {
    case DataEncoding::Binary:
        return {-32767.0, 32767.0};
    case DataEncoding::Binary32:
        return {-2147483647.0, 2147483647.0};
    case DataEncoding::Float32:
        return {-static_cast<double>(std::numeric_limits<float>::max()),
                static_cast<double>(std::numeric_limits<float>::max())};
    case DataEncoding::Ascii:
        break;
    }
    return {-99999.0, 99999.0};
}

} // namespace

void readAnalogLine(CfgCursor& cursor, Configuration& configuration) {
    CfgLine line = cursor.take();
    const AnalogShape shape = analogShape(line, configuration.revision < 1999);
    if (shape.decimals) {
        joinDecimals(line, *shape.decimals);
        configuration.hasDecimalCommas = true;
    }
    if (shape.textCommas != 0) {
        joinTexts(line, shape.textCommas);
    }
    AnalogLine channel;
    channel.unitOffset = line[4].offset;
    channel.primaryOffset = line[10].offset;
    channel.sideOffset = line[kSideField].offset;
    readTexts(line, channel);
    readNumbers(line, channel);
    if (configuration.revision >= 1999 || hasRatio(line)) {
        readRatio(line, channel);
    }
    if (line.count() > kFields) {
        line.tell(kFields, "", {Severity::Note, "extra-text", "the end of the line", "", false});
    }
    configuration.analog.push_back(std::move(channel));
}

void fillRanges(Configuration& configuration) {
    const Range range = rangeOf(configuration.encoding);
    for (AnalogLine& channel : configuration.analog) {
        channel.min = std::isnan(channel.min) ? range.min : channel.min;
        channel.max = std::isnan(channel.max) ? range.max : channel.max;
    }
}

} // namespace OrvComtradeIntake
