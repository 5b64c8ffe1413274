#include "cfg/read/channels.h"

#include "cfg/read/analogFields.h"
#include "cfg/read/analogShape.h"
#include "cfg/read/commas.h"
#include "cfg/read/fields.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

/// The number of a channel, of which `before` are those of its kind before it. One that is not greater than the number
/// before it is a finding. Any other is none: channels are exported in part, and status channels counted on behind the
/// analog ones.
template <typename Info>
std::uint64_t channelNumber(CfgCursor& cursor, const CfgLine& line, const char* name, const std::vector<Info>& before) {
    const std::uint64_t due = before.empty() ? 1 : before.back().number + 1;
    const std::optional<std::uint64_t> number = countOf(cursor, line, 0, name, "numbered after the channel before it");
    if (number && *number < due) {
        report(cursor.findings, Kind::ChannelNumbers, line, 0, name, {{}, {}, std::to_string(due)});
    }
    return number.value_or(due);
}

void readNumbers(CfgCursor& cursor, const CfgLine& line, AnalogInfo& channel, AnalogSource& source) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN(); // until fillRanges
    source.a = numberOf(cursor, line, 5, "a", 1.0, "read as 1, values as in the data").precise;
    source.b = numberOf(cursor, line, 6, "b", 0.0, "read as 0, no offset").precise;
    channel.a = static_cast<double>(source.a);
    channel.b = static_cast<double>(source.b);
    if (!line[7].text.empty()) {
        channel.skew = numberOf(cursor, line, 7, "skew", 0.0, "read as 0").value;
    }
    channel.min = numberOf(cursor, line, 8, "min", none, "read as the least value of the data type").value;
    channel.max = numberOf(cursor, line, 9, "max", none, "read as the greatest value of the data type").value;
    source.hasRange = !std::isnan(channel.min) || !std::isnan(channel.max); // the other end is the encoding's
}

void readSide(CfgCursor& cursor, const CfgLine& line, AnalogInfo& channel) {
    const std::string_view side = line[kSideField].text;
    if (!isSide(side)) {
        report(cursor.findings, Kind::Side, line, kSideField, "PS",
               {{}, "the side is unknown, values stay as recorded"});
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
               {{}, "read as 1 to 1", "the ratio and its side"});
        return;
    }
    channel.primary = quantityOf(cursor, line, kRatioField, "primary", 1.0, "read as 1");
    channel.secondary = quantityOf(cursor, line, kRatioField + 1, "secondary", 1.0, "read as 1");
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

constexpr std::size_t kStateField = 4;
constexpr std::size_t kOldStateField = 2;

bool isState(std::string_view text) {
    return text == "0" || text == "1";
}

std::size_t surplusOf(const CfgLine& line, std::size_t stateField) {
    const std::size_t last = line.count() - (line.count() == 0 ? 0 : 1);
    const bool isShifted = last > stateField && !isState(line[stateField].text) && isState(line[last].text);
    return isShifted ? last - stateField : 0;
}

int readState(CfgCursor& cursor, const CfgLine& line, std::size_t index) {
    const std::string_view text = line[index].text;
    if (isState(text)) {
        return text == "1" ? 1 : 0;
    }
    const std::optional<std::uint64_t> state = readCount(text);
    const bool isOne = state && *state == 1;
    const Kind kind = kindOfFault(line, index);
    report(cursor.findings, kind, line, index, "y", {{}, isOne ? "read as 1" : "read as 0", "0 or 1"});
    return isOne ? 1 : 0;
}

// A line that ends with another state may have commas in its texts instead.
void reportSurplus(CfgCursor& cursor, const CfgLine& line, std::size_t fields) {
    const bool hasSecondState = line.count() > fields && isState(line[line.count() - 1].text);
    reportRest(cursor, line, fields, hasSecondState ? "y" : "");
}

} // namespace

bool readAnalog(CfgCursor& cursor, ReadCfg& read) {
    CfgLine line = cursor.take();
    const bool isOld = read.header.revision < 1999;
    const AnalogShape shape = analogShape(line, isOld);
    if (shape.isAmbiguous) {
        report(cursor.findings, Kind::AmbiguousCommas, line, 0, "", {escaped(line.textFrom(0))});
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

void readStatus(CfgCursor& cursor, bool isOld, ReadCfg& read) {
    CfgLine line = cursor.take();
    const std::size_t stateField = isOld ? kOldStateField : kStateField;
    StatusInfo channel;
    channel.number = channelNumber(cursor, line, "Dn", read.header.status);
    if (const std::size_t surplus = surplusOf(line, stateField)) {
        if (isOld) {
            joinText(cursor, line, 1, surplus + 1, "ch_id");
        } else {
            joinTexts(cursor, line, surplus);
        }
    }
    if (line.written() < 2) {
        report(cursor.findings, Kind::FieldMissing, line, 1, "ch_id", {{}, "left empty", "the name of the channel"});
    }
    channel.id = textOf(line, 1);
    channel.phase = isOld ? std::string() : textOf(line, 2);
    channel.component = isOld ? std::string() : textOf(line, 3);
    channel.normalState = readState(cursor, line, stateField);
    reportSurplus(cursor, line, stateField + 1);
    read.header.status.push_back(std::move(channel));
}

} // namespace OrvComtradeIntake
