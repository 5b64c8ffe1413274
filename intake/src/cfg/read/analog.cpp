#include "cfg/read/analog.h"

#include "cfg/read/analogShape.h"
#include "cfg/read/channelNumber.h"
#include "cfg/read/commaInText.h"
#include "cfg/read/fields.h"

#include <cmath>
#include <limits>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kRatioField = 10;
constexpr std::size_t kSideField = 12;

void readNumbers(CfgCursor& cursor, const CfgLine& line, AnalogInfo& channel, AnalogSource& source) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN(); // until fillRanges
    source.a = numberOf(cursor, line, 5, "a", 1.0, "1: the values are those of the data").precise;
    source.b = numberOf(cursor, line, 6, "b", 0.0, "0: without an offset").precise;
    channel.a = static_cast<double>(source.a);
    channel.b = static_cast<double>(source.b);
    if (!line[7].text.empty()) {
        channel.skew = numberOf(cursor, line, 7, "skew", 0.0, "0").value;
    }
    channel.min = numberOf(cursor, line, 8, "min", none, "the least value of the data type").value;
    channel.max = numberOf(cursor, line, 9, "max", none, "the greatest value of the data type").value;
    source.hasRange = !std::isnan(channel.min) || !std::isnan(channel.max); // the other end is the encoding's
}

void readSide(CfgCursor& cursor, const CfgLine& line, AnalogInfo& channel) {
    const std::string_view side = line[kSideField].text;
    if (!isSide(side)) {
        report(cursor.findings, Kind::Side, line, kSideField, "PS", {{}, "taken for neither: values stay as recorded"});
        return;
    }
    const bool isPrimary = side.front() == 'P' || side.front() == 'p';
    channel.side = isPrimary ? Side::Primary : Side::Secondary;
    if (side.size() > 1) {
        report(cursor.findings, Kind::Side, line, kSideField, "PS", {{}, isPrimary ? "read as P" : "read as S"});
    }
}

void readRatio(CfgCursor& cursor, const CfgLine& line, AnalogInfo& channel) {
    if (line.written() <= kRatioField) {
        report(cursor.findings, Kind::FieldMissing, line, kRatioField, "primary",
               {{}, "1 to 1", "the ratio and its side"});
        return;
    }
    channel.primary = quantityOf(cursor, line, kRatioField, "primary", 1.0, "1");
    channel.secondary = quantityOf(cursor, line, kRatioField + 1, "secondary", 1.0, "1");
    readSide(cursor, line, channel);
}

struct Range {
    double min;
    double max;
};

Range rangeOf(DataType type) {
    constexpr auto greatestSingle = static_cast<double>(std::numeric_limits<float>::max());
    switch (type) {
    case DataType::Binary:
        return {-32767.0, 32767.0};
    case DataType::Binary32:
        return {-2147483647.0, 2147483647.0};
    case DataType::Float32:
        return {-greatestSingle, greatestSingle};
    case DataType::Ascii:
        break;
    }
    return {-99999.0, 99999.0};
}

} // namespace

bool readAnalog(CfgCursor& cursor, ReadCfg& read) {
    CfgLine line = cursor.take();
    const bool isOld = read.header.revision < 1999;
    const AnalogShape shape = analogShape(line, isOld);
    if (shape.isAmbiguous) {
        report(cursor.findings, Kind::AmbiguousCommas, line, 0, "", {shown(line.textFrom(0))});
        return false;
    }
    joinDecimals(cursor, line, shape.decimals);
    if (shape.textCommas != 0) {
        joinTexts(cursor, line, shape.textCommas);
    }
    AnalogInfo channel;
    AnalogSource source;
    source.line = line.place(0, "").line;
    source.ratioOffset = line[kRatioField].offset;
    source.sideOffset = line[kSideField].offset;
    channel.number = channelNumber(cursor, line, "An", read.header.analog);
    channel.id = textOf(line, 1);
    channel.phase = textOf(line, 2);
    channel.component = textOf(line, 3);
    channel.unit = textOf(line, 4);
    readNumbers(cursor, line, channel, source);
    const bool hasRatio = !line[kRatioField].text.empty() || !line[kRatioField + 1].text.empty();
    if (!isOld || hasRatio) {
        readRatio(cursor, line, channel);
    }
    reportRest(cursor, line, isOld && !hasRatio ? kRatioField : kSideField + 1, "");
    read.header.analog.push_back(std::move(channel));
    read.analog.push_back(source);
    return true;
}

void fillRanges(ReadCfg& read) {
    const Range range = rangeOf(read.header.dataType);
    for (AnalogInfo& channel : read.header.analog) {
        channel.min = std::isnan(channel.min) ? range.min : channel.min;
        channel.max = std::isnan(channel.max) ? range.max : channel.max;
    }
}

} // namespace OrvComtradeIntake
