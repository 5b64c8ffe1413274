#include "cfgSteps.h"
#include "dateTime.h"

#include <algorithm>
#include <array>
#include <string>

namespace OrvComtradeIntake {

namespace {

constexpr std::array<const char*, 2> kFields = {"start", "trigger"};

using Dates = std::array<std::optional<ReadDateTime>, 2>;

// The line of the data type begins with a letter, the one of a date with a digit or whatever stands for it.
bool isDateLine(const TextLine& line) {
    const std::string_view text = trimmed(line.text);
    const auto lower = static_cast<unsigned char>(static_cast<unsigned char>(text.front()) | 0x20U);
    return text.find_first_of("/:") != std::string_view::npos || lower < 'a' || lower > 'z';
}

std::size_t dateLinesAhead(const CfgCursor& cursor) {
    std::size_t count = 0;
    while (count < kFields.size() && count < cursor.left() && isDateLine(cursor.text.lines[cursor.next + count])) {
        ++count;
    }
    return count;
}

bool isNumber(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
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
    return !fraction.empty() && isNumber(fraction) && fields.time.find('.') == std::string_view::npos;
}

Dates readDates(const std::vector<CfgLine>& lines, DateOrder order) {
    Dates dates;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const CfgLine& line = lines[index];
        const DateFields fields = fieldsOf(line);
        std::string time(fields.time);
        if (hasFractionBehindComma(line)) {
            time.append(1, '.').append(line[fields.next].text);
        }
        dates[index] = readDateTime(fields.date, time, order);
    }
    return dates;
}

bool areAllRead(const Dates& dates, std::size_t count) {
    return std::all_of(dates.begin(), dates.begin() + static_cast<std::ptrdiff_t>(count),
                       [](const auto& date) { return date.has_value(); });
}

DateOrder otherOrder(DateOrder order) {
    return order == DateOrder::DayMonth ? DateOrder::MonthDay : DateOrder::DayMonth;
}

void tellDate(const CfgLine& line, const char* field, Severity severity, const std::string& expected,
              const std::string& done) {
    line.tell(0, field, {severity, "date", expected, done, false}, shown(line.textFrom(0)));
}

// Recorders write the zero of their clock where they have no time.
bool isZero(const ReadDateTime& date) {
    return date.instant.nanoseconds == 0;
}

/// What is told of one date, in one finding.
class Oddities {
public:
    void add(const char* expected, const char* done) {
        _expected += (_expected.empty() ? "" : "; ") + std::string(expected);
        _done += (_done.empty() || *done == '\0' ? "" : "; ") + std::string(done);
    }

    void tell(const CfgLine& line, const char* field) const {
        if (!_expected.empty()) {
            tellDate(line, field, Severity::Note, _expected, _done);
        }
    }

private:
    std::string _expected;
    std::string _done;
};

void tellOddities(const CfgLine& line, const char* field, const ReadDateTime& date, bool isOtherOrder) {
    const DateFields fields = fieldsOf(line);
    Oddities oddities;
    if (isOtherOrder) {
        oddities.add("day and month in the order of the revision", "read in the other order, which both dates allow");
    } else if (!date.isStandard) {
        oddities.add("a date with slashes", "");
    }
    if (fields.isInOneField) {
        oddities.add("a comma between date and time", "parted before the hour");
    }
    if (fields.hasZone) {
        oddities.add("a time without a zone", "the zone left out");
    }
    if (date.isMidnight) {
        oddities.add("an hour from 0 to 23", "taken as 00:00:00 of the next day");
    }
    if (date.isLeapSecond) {
        oddities.add("a second from 0 to 59", "taken as a leap second, which is the next second 0");
    }
    if (hasFractionBehindComma(line)) {
        oddities.add("a decimal point in the seconds", "the comma taken for one");
    } else if (!line[fields.next].text.empty()) {
        line.tell(fields.next, field, {Severity::Note, "extra-text", "the end of the line", "", false});
    }
    oddities.tell(line, field);
}

std::optional<Instant> judged(const CfgLine& line, const char* field, const std::optional<ReadDateTime>& date,
                              bool isOtherOrder) {
    if (!date) {
        tellDate(line, field, Severity::Warning, "a date and time", "taken as not given");
        return std::nullopt;
    }
    if (isZero(*date)) {
        tellDate(line, field, Severity::Note, "a date after 01/01/1970", "taken as not given");
        return std::nullopt;
    }
    tellOddities(line, field, *date, isOtherOrder);
    return date->instant;
}

void takeDates(const std::vector<CfgLine>& lines, Configuration& configuration) {
    const DateOrder order = configuration.revision < 1999 ? DateOrder::MonthDay : DateOrder::DayMonth;
    Dates dates = readDates(lines, order);
    const Dates others = readDates(lines, otherOrder(order));
    const bool isOther = !areAllRead(dates, lines.size()) && areAllRead(others, lines.size());
    if (isOther) {
        dates = others;
    }
    std::array<std::optional<Instant>, 2> instants;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        instants[index] = judged(lines[index], kFields[index], dates[index], isOther);
        if (dates[index] && dates[index]->fractionDigits > 6) {
            configuration.nanosecondStamps = true;
        }
    }
    configuration.start = instants[0];
    configuration.trigger = instants[1];
}

} // namespace

void readDates(CfgCursor& cursor, Configuration& configuration) {
    const std::size_t present = dateLinesAhead(cursor);
    std::vector<CfgLine> lines;
    lines.reserve(kFields.size());
    for (std::size_t index = 0; index < present; ++index) {
        lines.push_back(cursor.take());
    }
    for (std::size_t index = present; index < kFields.size(); ++index) {
        cursor.tellMissing(kFields[index], {Severity::Warning, "field-missing", "a date and time",
                                            "01/01/1970 written, which stands for none", true});
    }
    takeDates(lines, configuration);
}

} // namespace OrvComtradeIntake
