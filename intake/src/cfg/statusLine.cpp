#include "cfgSteps.h"
#include "commaInText.h"

#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kStateField = 4;
constexpr std::size_t kOldStateField = 2;

bool isState(std::string_view text) {
    return text == "0" || text == "1";
}

std::size_t surplusOf(const CfgLine& line, std::size_t stateField) {
    const std::size_t last = line.count() - 1;
    const bool isShifted = last > stateField && !isState(line[stateField].text) && isState(line[last].text);
    return isShifted ? last - stateField : 0;
}

int readState(const CfgLine& line, std::size_t index) {
    const CfgField& field = line[index];
    if (isState(field.text) && libraryInteger(field.raw)) {
        return field.text == "1" ? 1 : 0;
    }
    const bool isCounted = index < line.libraryCount();
    const std::optional<std::uint64_t> state = readCount(field.text);
    const bool isKnown = state && *state <= 1;
    const std::optional<std::int64_t> library = libraryInteger(field.raw);
    const bool isSame = isKnown ? library && static_cast<std::uint64_t>(*library) == *state : !isCounted;
    const char* const code = !line.has(index)     ? "field-missing"
                             : field.text.empty() ? "field-empty"
                                                  : "field-malformed";
    if (!isKnown || !isSame) {
        line.tell(index, "y", {Severity::Warning, code, "0 or 1", isKnown ? "read by its value" : "0", !isSame});
    }
    return isKnown ? static_cast<int>(*state) : 0;
}

void tellNumber(const CfgLine& line) {
    if (!readCount(line[0].text)) {
        line.tell(0, "Dn", {Severity::Note, "field-malformed", "the channel's number", "", false});
    }
}

// A line that ends with another state may have commas in its texts instead.
void tellSurplus(const CfgLine& line, std::size_t fields) {
    if (isState(line[line.count() - 1].text)) {
        line.tell(fields, "y", {Severity::Warning, "extra-text", "one state", "the first one taken", false});
    } else {
        line.tell(fields, "", {Severity::Note, "extra-text", "the end of the line", "", false});
    }
}

StatusLine readOld(CfgLine& line) {
    const std::size_t surplus = surplusOf(line, kOldStateField);
    line.join(1, surplus + 1, "ch_id");
    StatusLine channel;
    channel.id = line.textOf(1, "ch_id");
    channel.normalState = readState(line, kOldStateField);
    return channel;
}

StatusLine readNew(CfgLine& line) {
    const std::size_t surplus = surplusOf(line, kStateField);
    if (surplus != 0) {
        joinTexts(line, surplus);
    }
    StatusLine channel;
    channel.id = line.textOf(1, "ch_id");
    channel.phase = line.textOf(2, "ph");
    channel.component = line.textOf(3, "ccbm");
    channel.normalState = readState(line, kStateField);
    return channel;
}

} // namespace

void readStatusLine(CfgCursor& cursor, bool isOldLayout, Configuration& configuration) {
    CfgLine line = cursor.take();
    tellNumber(line);
    if (line.libraryCount() < 2) {
        line.tell(1, "ch_id", {Severity::Warning, "field-missing", "the channel's name", "left empty", true});
    }
    configuration.status.push_back(isOldLayout ? readOld(line) : readNew(line));
    const std::size_t fields = (isOldLayout ? kOldStateField : kStateField) + 1;
    if (line.count() > fields) {
        tellSurplus(line, fields);
    }
}

} // namespace OrvComtradeIntake
