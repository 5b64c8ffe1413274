#include "cfg/read/status.h"

#include "cfg/read/channelNumber.h"
#include "cfg/read/commaInText.h"
#include "cfg/read/fields.h"

#include <utility>

namespace OrvComtradeIntake {

namespace {

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
    report(cursor.findings, kind, line, index, "y", {{}, isOne ? "read as 1" : "0", "0 or 1"});
    return isOne ? 1 : 0;
}

// A line that ends with another state may have commas in its texts instead.
void reportSurplus(CfgCursor& cursor, const CfgLine& line, std::size_t fields) {
    const bool hasSecondState = line.count() > fields && isState(line[line.count() - 1].text);
    reportRest(cursor, line, fields, hasSecondState ? "y" : "");
}

} // namespace

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
        report(cursor.findings, Kind::FieldMissing, line, 1, "ch_id", {{}, "left empty", "the channel's name"});
    }
    channel.id = textOf(line, 1);
    channel.phase = isOld ? std::string() : textOf(line, 2);
    channel.component = isOld ? std::string() : textOf(line, 3);
    channel.normalState = readState(cursor, line, stateField);
    reportSurplus(cursor, line, stateField + 1);
    read.header.status.push_back(std::move(channel));
}

} // namespace OrvComtradeIntake
