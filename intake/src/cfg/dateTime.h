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

/// Reads "12/01/2011" and "05:55:30.075011". A number may have one or two digits, and blanks around it. Digits of a
/// second beyond the ninth are cut off. Years of two digits are those from 1970 to 2069.
///
/// Also accepted: a date with the year first, with points, hyphens or blanks, or with the English name of the month;
/// and the time 24:00:00. Returns nothing if there is no such day or time, or if it is outside the years 1678 to 2261.
std::optional<ReadDateTime> readDateTime(std::string_view date, std::string_view time, DateOrder order);

/// Parts of a text that holds both.
struct DateAndTime {
    std::string_view date;
    std::string_view time;
    bool hasZone = false; ///< "Z" or "+01:00" follows; `time` does not contain it
};

/// Cuts "12/01/2011 05:55:30" at the blank (or comma), and "2011-01-12T05:55:30" at the letter. Returns nothing if none
/// of these is in front of the hour.
std::optional<DateAndTime> splitDateAndTime(std::string_view text);

/// "12/01/2011,05:55:30.075011", with nine digits of a second or with six.
std::string dateTimeText(Instant instant, DateOrder order, bool withNanoseconds);

} // namespace OrvComtradeIntake
