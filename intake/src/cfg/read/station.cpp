#include "cfg/read/station.h"

#include "base/characters.h"
#include "base/utf8.h"
#include "cfg/read/commas.h"
#include "cfg/read/counts.h"
#include "cfg/read/fields.h"

namespace OrvComtradeIntake {

namespace {

std::optional<std::uint64_t> yearOf(const CfgField& field) {
    const std::optional<std::uint64_t> year = readCount(field.text);
    return year && *year >= 1991 && *year <= 2099 ? year : std::nullopt;
}

// A byte-order mark within quotation marks, or one that stands in another encoding: written first, it would be one.
std::string withoutMarks(const CfgCursor& cursor, const CfgLine& line) {
    std::string name = textOf(line, 0);
    while (hasByteOrderMark(name)) {
        report(cursor.findings, Kind::ByteOrderMark, line, 0, "station_name", {"a byte-order mark", "skipped"});
        name = trimmed(std::string_view(name).substr(kByteOrderMark.size()));
    }
    return name;
}

bool isCountsLineAhead(const CfgCursor& cursor, std::size_t ahead) {
    return ahead < cursor.left() && isCountsLine(cursor.peek(ahead));
}

} // namespace

RevisionYear readStation(CfgCursor& cursor, Header& header) {
    RevisionYear year;
    if (isCountsLineAhead(cursor, 0) && !isCountsLineAhead(cursor, 1)) {
        cursor.findings.add(Kind::FieldMissing, cursor.place("station_name"),
                            {{}, "the names are left empty", "the line of station, recorder and revision year"});
        year.isLineMissing = true;
        return year;
    }
    CfgLine line = cursor.take();
    const std::size_t last = line.count() - (line.count() == 0 ? 0 : 1);
    if (last > 2 && !yearOf(line[2]) && yearOf(line[last])) {
        joinText(cursor, line, 0, last - 1, "station_name");
    }
    header.station = withoutMarks(cursor, line);
    header.recorder = textOf(line, 1);
    year.year = yearOf(line[2]);
    year.written = line[2].text;
    year.place = line.place(2, "rev_year");
    reportRest(cursor, line, 3, "rev_year");
    return year;
}

} // namespace OrvComtradeIntake
