#pragma once

#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

enum class DateOrder {
    DayMonth, ///< dd/mm/yyyy, revision 1999 and later
    MonthDay  ///< mm/dd/yy, revision 1991
};

/// A date and time as written in a `.cfg`.
struct ReadDateTime {
    Instant instant;
    int fractionDigits = 0;
    bool isStandard = true;    ///< slashes between the numbers of the date, and the year at its end
    bool hasShortYear = false; ///< of two digits, as in revision 1991
    bool isMidnight = false;   ///< written as 24:00:00 of the day before
    bool isLeapSecond = false; ///< second 60, which is taken as the next second 0
};

/// Reads "12/01/2011" and "05:55:30.075011": one or two digits for each number, blanks around, fractions of 0 to 9
/// digits (further ones are cut off), years of two digits from 1970 to 2069; a date with the year first, points,
/// hyphens or blanks in it, or the month by its English name, is taken too, and so is 24:00:00. Nothing where that is
/// no day or time, or outside of the years 1678 to 2261.
std::optional<ReadDateTime> readDateTime(std::string_view date, std::string_view time, DateOrder order);

/// Parts of a text that holds both.
struct DateAndTime {
    std::string_view date;
    std::string_view time;
    bool hasZone = false; ///< "Z" or "+01:00" follows, which is no part of the time
};

/// Cuts "12/01/2011 05:55:30" at the blank (or comma), and "2011-01-12T05:55:30" at the letter.
/// Nothing where none of them stands before the hour.
std::optional<DateAndTime> splitDateAndTime(std::string_view text);

/// "12/01/2011,05:55:30.075011", with nine digits of a second or with six.
std::string dateTimeText(Instant instant, DateOrder order, bool withNanoseconds);

} // namespace OrvComtradeIntake
