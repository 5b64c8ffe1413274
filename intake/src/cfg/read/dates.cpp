#include "cfg/read/dates.h"

#include "base/characters.h"
#include "cfg/dateTime.h"
#include "cfg/read/fields.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::array<const char*, 2> kFields = {"start", "trigger"};

using Dates = std::vector<std::optional<ReadDateTime>>;

// The line of the data type begins with a letter, the one of a date with a digit or whatever stands for it.
bool isDateLine(const CfgLine& line) {
    const std::string_view first = line[0].text;
    const bool isWord = !first.empty() && isLetter(first.front());
    return !isWord || line.textFrom(0).find_first_of("/:") != std::string::npos;
}

/// A line of a date by its parts.
struct DateFields {
    std::string_view date;
    std::string_view time;
    std::size_t next = 2; ///< index of the field behind them
    bool isInOneField = false;
    bool hasZone = false;
};

// Beside a time of its own a field is never a date and a time in one.
DateFields fieldsOf(const CfgLine& line) {
    if (line[1].text.find(':') == std::string_view::npos) {
        if (const auto both = splitDateAndTime(line[0].text)) {
            return {both->date, both->time, 1, true, both->hasZone};
        }
    }
    return {line[0].text, line[1].text, 2, false, false};
}

// A fraction of a second behind a comma, as some languages write it.
bool hasFractionBehindComma(const CfgLine& line) {
    const DateFields fields = fieldsOf(line);
    const std::string_view fraction = line[fields.next].text;
    const bool isNumber = !fraction.empty() && std::all_of(fraction.begin(), fraction.end(), isDigit);
    return isNumber && fields.time.find('.') == std::string_view::npos;
}

std::optional<ReadDateTime> dateOf(const CfgLine& line, DateOrder order) {
    const DateFields fields = fieldsOf(line);
    std::string time(fields.time);
    std::replace(time.begin(), time.end(), ',', '.');
    if (hasFractionBehindComma(line)) {
        time.append(1, '.').append(line[fields.next].text);
    }
    return readDateTime(fields.date, time, order);
}

Dates datesOf(const std::vector<CfgLine>& lines, DateOrder order) {
    Dates dates;
    dates.reserve(lines.size());
    for (const CfgLine& line : lines) {
        dates.push_back(dateOf(line, order));
    }
    return dates;
}

bool areAllRead(const Dates& dates) {
    return std::all_of(dates.begin(), dates.end(), [](const auto& date) { return date.has_value(); });
}

// Recorders that have no time write the zero of their clock, or zeros.
bool isUnset(const CfgLine& line, const std::optional<ReadDateTime>& date) {
    const std::string_view digits = fieldsOf(line).date;
    const bool isZero =
        digits.find('0') != std::string_view::npos && digits.find_first_not_of("0/-. ") == std::string_view::npos;
    return isZero || (date && date->instant.nanoseconds == 0);
}

/// What is odd about one date, in one finding.
class Oddities {
public:
    void add(const char* expected, const char* repair) {
        _expected += (_expected.empty() ? "" : "; ") + std::string(expected);
        _repair += (_repair.empty() || *repair == '\0' ? "" : "; ") + std::string(repair);
    }

    void report(Findings& findings, const CfgLine& line, const char* field) const {
        if (!_expected.empty()) {
            findings.add(Kind::DateFormat, line.place(0, field), {escaped(line.textFrom(0)), _repair, _expected});
        }
    }

private:
    std::string _expected;
    std::string _repair;
};

void reportOddities(CfgCursor& cursor, const CfgLine& line, const char* field, const ReadDateTime& date,
                    bool isOtherOrder, bool isOld) {
    const DateFields fields = fieldsOf(line);
    Oddities oddities;
    if (isOtherOrder) {
        oddities.add("day and month in the order of the revision", "read in the other order, which fits both dates");
    } else if (!date.isStandard) {
        oddities.add("a date with slashes", "");
    } else if (date.hasShortYear && !isOld) {
        oddities.add("a year of four digits", "read as a year from 1970 to 2069");
    }
    if (fields.isInOneField) {
        oddities.add("a comma between date and time", "split before the hour");
    }
    if (fields.hasZone) {
        oddities.add("a time without a zone", "the zone skipped");
    }
    if (date.isMidnight) {
        oddities.add("an hour from 0 to 23", "read as 00:00:00 of the next day");
    }
    if (date.isLeapSecond) {
        oddities.add("a second from 0 to 59", "read as a leap second, the next second 0");
    }
    const bool hasFraction = hasFractionBehindComma(line);
    if (hasFraction || fields.time.find(',') != std::string_view::npos) {
        oddities.add("a decimal point in the seconds", "the comma read as one");
    }
    oddities.report(cursor.findings, line, field);
    reportRest(cursor, line, fields.next + (hasFraction ? 1 : 0), field);
}

std::optional<Instant> judged(CfgCursor& cursor, const CfgLine& line, const char* field,
                              const std::optional<ReadDateTime>& date, bool isOtherOrder, bool isOld) {
    const Place place = line.place(0, field);
    if (isUnset(line, date)) {
        cursor.findings.add(Kind::DateUnset, place, {escaped(line.textFrom(0)), "read as not given"});
        return std::nullopt;
    }
    if (!date) {
        cursor.findings.add(Kind::DateUnknown, place, {escaped(line.textFrom(0)), "read as not given"});
        return std::nullopt;
    }
    reportOddities(cursor, line, field, *date, isOtherOrder, isOld);
    return date->instant;
}

} // namespace

void readDates(CfgCursor& cursor, ReadCfg& read) {
    std::vector<CfgLine> lines;
    while (lines.size() < kFields.size() && !cursor.isAtEnd() && isDateLine(cursor.peek())) {
        lines.push_back(cursor.take());
    }
    for (std::size_t index = lines.size(); index < kFields.size(); ++index) {
        cursor.findings.add(Kind::FieldMissing, cursor.place(kFields[index]),
                            {{}, "read as not given", "a date and time"});
    }
    read.trigger = lines.size() < kFields.size() ? cursor.place("trigger") : lines[1].place(0, "trigger");
    const bool isOld = read.header.revision < 1999;
    Dates dates = datesOf(lines, isOld ? DateOrder::MonthDay : DateOrder::DayMonth);
    Dates others = datesOf(lines, isOld ? DateOrder::DayMonth : DateOrder::MonthDay);
    const bool isOtherOrder = !areAllRead(dates) && areAllRead(others);
    dates = isOtherOrder ? others : dates;
    std::array<std::optional<Instant>, kFields.size()> instants;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        instants[index] = judged(cursor, lines[index], kFields[index], dates[index], isOtherOrder, isOld);
        const bool hasNanoseconds = dates[index] && dates[index]->fractionDigits > 6;
        read.header.hasNanosecondDates = read.header.hasNanosecondDates || hasNanoseconds;
    }
    read.header.start = instants[0];
    read.header.trigger = instants[1];
}

} // namespace OrvComtradeIntake
