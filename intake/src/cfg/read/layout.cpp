#include "cfg/read/layout.h"

#include "cfg/read/analogShape.h"

#include <algorithm>
#include <string>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kOldAnalogFields = 10;
constexpr std::size_t kNewAnalogFields = 13;
constexpr std::size_t kNewStatusFields = 5;
constexpr std::uint64_t kFirstNewYear = 1999;

bool isOldYear(const RevisionYear& year) {
    return year.year && *year.year < kFirstNewYear;
}

bool isNewYear(const RevisionYear& year) {
    return year.year && *year.year >= kFirstNewYear;
}

// An empty state at the end counts, the empty fields with which a spreadsheet fills lines up do not.
std::size_t statusFields(const CfgLine& line) {
    return line.written() > kNewStatusFields ? line.count() : line.written();
}

bool endsWithState(const CfgLine& line) {
    const std::string_view last = line[statusFields(line) - 1].text;
    return last.empty() || last == "0" || last == "1";
}

// Number, name and state. A comma in a name makes one more field. If most lines are so, only the year distinguishes
// them from lines of the later layout that lack a field. Two commas make as many fields as the later layout has: then
// the other lines decide.
bool areOldStatusLines(const CfgCursor& cursor, const ChannelCounts& counts, bool isOld, bool canBeLong) {
    std::size_t shortLines = 0;
    bool hasLongLines = false;
    for (std::size_t index = 0; index < counts.status; ++index) {
        const CfgLine line = cursor.peek(counts.analog + index);
        const std::size_t fields = statusFields(line);
        if (fields < 3 || (fields > 4 && !canBeLong) || !endsWithState(line)) {
            return false;
        }
        shortLines += fields == 3 ? 1U : 0U;
        hasLongLines = hasLongLines || fields > 4;
    }
    return (isOld && !hasLongLines) || 2 * shortLines > counts.status;
}

// Without those that decimal commas make where the line ends without a side.
std::size_t analogFields(const CfgLine& line) {
    const std::size_t fields = line.count();
    if (fields <= kOldAnalogFields || isSide(line[fields - 1].text)) {
        return fields;
    }
    const std::vector<bool> areJoined = analogShape(line, true).decimals.areJoined;
    return fields - static_cast<std::size_t>(std::count(areJoined.begin(), areJoined.end(), true));
}

std::size_t mostAnalogFields(const CfgCursor& cursor, const ChannelCounts& counts, bool isNew) {
    std::size_t most = 0;
    for (std::size_t index = 0; index < counts.analog; ++index) {
        const CfgLine line = cursor.peek(index);
        most = std::max(most, isNew ? line.written() : analogFields(line));
    }
    return most;
}

void reportYear(Findings& findings, Kind kind, const RevisionYear& year, int revision) {
    findings.add(kind, year.place, {escaped(year.written), "read as revision " + std::to_string(revision)});
}

} // namespace

Layout judgeLayout(const CfgCursor& cursor, const ChannelCounts& counts, const RevisionYear& year) {
    const std::size_t fields = mostAnalogFields(cursor, counts, isNewYear(year));
    const bool hasAnalog = counts.analog != 0;
    const bool hasStatus = counts.status != 0;
    const bool hasOldAnalog = hasAnalog && fields <= kOldAnalogFields;
    const bool canBeOld = fields < kNewAnalogFields && !isNewYear(year);
    Layout layout;
    layout.hasOldStatus = hasStatus && areOldStatusLines(cursor, counts, canBeOld && isOldYear(year), canBeOld);
    const bool isOldByAnalog = hasOldAnalog && (isOldYear(year) || !hasStatus);
    const bool isOld = canBeOld && (layout.hasOldStatus || isOldByAnalog);
    layout.revision = isNewYear(year) ? static_cast<int>(*year.year) : isOld ? 1991 : 1999;
    const bool isKnownYear = year.year && (*year.year == 1991 || *year.year == 1999 || *year.year == 2013);
    const bool isMixed = (hasOldAnalog && !isOld) || (hasStatus && layout.hasOldStatus != isOld);
    if (year.isLineMissing) {
        return layout;
    }
    if (isMixed || (isOldYear(year) && !isOld)) {
        reportYear(cursor.findings, Kind::Layout, year, layout.revision);
    } else if (!isKnownYear && !(year.written.empty() && isOld)) {
        reportYear(cursor.findings, Kind::Revision, year, layout.revision);
    }
    return layout;
}

} // namespace OrvComtradeIntake
