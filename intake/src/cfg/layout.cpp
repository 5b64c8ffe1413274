#include "analogShape.h"
#include "cfgSteps.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kOldAnalogFields = 10;
constexpr std::size_t kNewAnalogFields = 13;
constexpr std::uint64_t kFirstNewYear = 1999;

bool endsWithState(const CfgText& text, const TextLine& textLine) {
    Findings unused;
    const CfgLine line(text, textLine, unused);
    const std::string_view last = line[line.count() - 1].text;
    return last.empty() || last == "0" || last == "1";
}

// Number, name and state; a comma in a name makes one field more, which only the year can tell from a new line that is
// short of one where most lines are so. Two commas make as many fields as a new line has: the other lines tell.
bool areOldStatusLines(const CfgCursor& cursor, const ChannelCounts& counts, bool isOldYear, bool canBeLong) {
    std::size_t shortLines = 0;
    bool hasLongLines = false;
    for (std::size_t index = cursor.next + counts.analog; index < cursor.next + counts.analog + counts.status;
         ++index) {
        const std::size_t fields = fieldCount(cursor.text.lines[index]);
        if (fields < 3 || (fields > 4 && !canBeLong) || !endsWithState(cursor.text, cursor.text.lines[index])) {
            return false;
        }
        shortLines += fields == 3 ? 1U : 0U;
        hasLongLines = hasLongLines || fields > 4;
    }
    return (isOldYear && !hasLongLines) || 2 * shortLines > counts.status;
}

// Without those that decimal commas make where the line ends without a side.
std::size_t analogFields(const CfgText& text, const TextLine& textLine, bool isOld) {
    const std::size_t fields = fieldCount(textLine);
    const std::size_t comma = textLine.text.rfind(',');
    const std::string_view last =
        trimmed(std::string_view(textLine.text).substr(comma == std::string::npos ? 0 : comma + 1));
    if (fields <= kOldAnalogFields || isSide(last)) {
        return fields;
    }
    Findings unused;
    const AnalogShape shape = analogShape(CfgLine(text, textLine, unused), isOld);
    return shape.decimals ? fields - shape.decimals->count : fields;
}

std::size_t mostAnalogFields(const CfgCursor& cursor, const ChannelCounts& counts, bool isOld) {
    std::size_t most = 0;
    for (std::size_t index = cursor.next; index < cursor.next + counts.analog; ++index) {
        most = std::max(most, analogFields(cursor.text, cursor.text.lines[index], isOld));
    }
    return most;
}

struct Layout {
    bool isOldStatus = false; ///< number, name, normal state
    bool hasSides = false;    ///< some analog line has a ratio and a side
    bool hasOldAnalog = false;
    bool hasStatus = false;
};

bool isOddYear(const RevisionYear& year) {
    return !year.written || *year.written < 1991 || *year.written > 2099;
}

Layout layoutOf(const CfgCursor& cursor, const ChannelCounts& counts, const RevisionYear& year) {
    const bool isOld = isOddYear(year) || *year.written < kFirstNewYear;
    const std::size_t fields = mostAnalogFields(cursor, counts, isOld);
    Layout layout;
    layout.hasStatus = counts.status != 0;
    layout.hasSides = fields >= kNewAnalogFields;
    const bool canBeOld = !layout.hasSides && isOld;
    layout.isOldStatus = layout.hasStatus && areOldStatusLines(cursor, counts, canBeOld && !isOddYear(year), canBeOld);
    layout.hasOldAnalog = fields != 0 && fields <= kOldAnalogFields;
    return layout;
}

int revisionOf(const Layout& layout, const RevisionYear& year) {
    const bool isNewYear = !isOddYear(year) && *year.written >= kFirstNewYear;
    if (isNewYear) {
        return static_cast<int>(*year.written);
    }
    const bool isOld = !layout.hasSides && (layout.hasStatus ? layout.isOldStatus : layout.hasOldAnalog);
    return isOld ? 1991 : 1999;
}

// Whether the library takes every channel line for what it is.
bool isReadByLibrary(const Layout& layout, const RevisionYear& year) {
    if (!year.library) {
        return false;
    }
    const bool isNewForLibrary = *year.library >= static_cast<std::int64_t>(kFirstNewYear);
    const bool areStatusesRead = !layout.hasStatus || layout.isOldStatus != isNewForLibrary;
    return areStatusesRead && (isNewForLibrary || !layout.hasSides);
}

void tellYear(const CfgLine& line, int revision, const Told& told) {
    Told complete = told;
    complete.done = told.isMended ? "written as revision " + std::to_string(revision) : "";
    line.tell(2, "rev_year", complete);
}

bool isKnownYear(std::uint64_t year) {
    return year == 1991 || year == 1999 || year == 2013;
}

} // namespace

bool judgeLayout(const CfgCursor& cursor, const ChannelCounts& counts, const RevisionYear& year,
                 Configuration& configuration) {
    const Layout layout = layoutOf(cursor, counts, year);
    configuration.revision = revisionOf(layout, year);
    if (year.isStationMissing) {
        return layout.isOldStatus;
    }
    const CfgLine station(cursor.text, cursor.text.lines[year.line], cursor.findings);
    const bool isRead = isReadByLibrary(layout, year);
    const Severity severity = isRead ? Severity::Note : Severity::Warning;
    const auto amounted = static_cast<std::uint64_t>(configuration.revision);
    if (isOddYear(year)) {
        tellYear(station, configuration.revision, {severity, "revision", "1991, 1999 or 2013", "", !isRead});
    } else if (*year.written == amounted && isRead && !isKnownYear(amounted)) {
        tellYear(station, configuration.revision, {Severity::Note, "revision", "1991, 1999 or 2013", "", false});
    } else if (*year.written != amounted || !isRead) {
        tellYear(station, configuration.revision,
                 {severity, "layout", "the line layout of that year; the lines are those of another", "", !isRead});
    }
    return layout.isOldStatus;
}

} // namespace OrvComtradeIntake
