#include "cfgSteps.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

bool isYear(std::string_view field) {
    const std::optional<std::uint64_t> year = readCount(field);
    return year && *year >= 1991 && *year <= 2099;
}

bool endsWithLetter(std::string_view text, char letter) {
    return text.size() > 1 && (text.back() == letter || text.back() == letter - 'a' + 'A');
}

bool isCountsLine(const CfgCursor& cursor, std::size_t index) {
    if (index >= cursor.text.lines.size()) {
        return false;
    }
    Findings unused;
    const CfgLine line(cursor.text, cursor.text.lines[index], unused);
    return line.count() == 3 && readCount(line[0].text) && endsWithLetter(line[1].text, 'a') &&
           endsWithLetter(line[2].text, 'd');
}

// A comma in a name moves the year to the right.
void joinNames(CfgLine& line) {
    const std::size_t count = line.count();
    if (count > 3 && !isYear(line[2].text) && isYear(line[count - 1].text)) {
        line.join(0, count - 2, "station_name");
    }
}

void readYear(const CfgLine& line, RevisionYear& year) {
    year.written = readCount(line[2].text);
    if (line.libraryCount() > 2) {
        year.library = libraryInteger(line[2].raw);
    }
}

} // namespace

RevisionYear readStationLine(CfgCursor& cursor, Configuration& configuration) {
    RevisionYear year;
    year.line = cursor.next;
    if (isCountsLine(cursor, cursor.next) && !isCountsLine(cursor, cursor.next + 1)) {
        cursor.tellMissing("station_name",
                           {Severity::Warning, "field-missing", "the station line", "names left empty", true});
        year.isStationMissing = true;
        return year;
    }
    CfgLine line = cursor.take();
    joinNames(line);
    configuration.station = line.textOf(0, "station_name");
    configuration.recorder = line.textOf(1, "rec_dev_id");
    readYear(line, year);
    if (line.count() > 3) {
        line.tell(3, "rev_year", {Severity::Note, "extra-text", "the end of the line", "", false});
    }
    return year;
}

} // namespace OrvComtradeIntake
