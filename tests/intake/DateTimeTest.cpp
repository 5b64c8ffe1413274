#include "cfg/dateTime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using namespace OrvComtradeIntake;

namespace {

std::string read(const char* date, const char* time, DateOrder order) {
    const auto found = readDateTime(date, time, order);
    return found ? found->instant.text() : "none";
}

} // namespace

TEST(ReadDateTime, TakesTheFormsThatDevicesWrite) {
    const struct {
        const char* why;
        const char* date;
        const char* time;
        DateOrder order;
        const char* expected;
    } rows[] = {
        {"day first", "12/01/2011", "05:55:30.075011", DateOrder::DayMonth, "2011-01-12T05:55:30.075011000"},
        {"month first", "12/01/2011", "05:55:30.075011", DateOrder::MonthDay, "2011-12-01T05:55:30.075011000"},
        {"two-digit year 07", "01/02/07", "00:45:13.457000", DateOrder::MonthDay, "2007-01-02T00:45:13.457000000"},
        {"two-digit year 70", "01/02/70", "00:00:01", DateOrder::MonthDay, "1970-01-02T00:00:01.000000000"},
        {"two-digit year 69", "01/02/69", "00:00:01", DateOrder::MonthDay, "2069-01-02T00:00:01.000000000"},
        {"nine digits", "15/12/2023", "17:36:30.885675860", DateOrder::DayMonth, "2023-12-15T17:36:30.885675860"},
        {"three digits", "15/12/2023", "17:36:30.885", DateOrder::DayMonth, "2023-12-15T17:36:30.885000000"},
        {"twelve digits", "15/12/2023", "17:36:30.885675860999", DateOrder::DayMonth, "2023-12-15T17:36:30.885675860"},
        {"point alone", "15/12/2023", "17:36:30.", DateOrder::DayMonth, "2023-12-15T17:36:30.000000000"},
        {"blanks", " 15/11/2025 ", " 14:41:59.066000 ", DateOrder::DayMonth, "2025-11-15T14:41:59.066000000"},
        {"blanks inside", " 5/ 1/2025", " 4: 1: 9.5", DateOrder::DayMonth, "2025-01-05T04:01:09.500000000"},
        {"year first", "2025-04-24", "14:25:09", DateOrder::DayMonth, "2025-04-24T14:25:09.000000000"},
        {"points", "24.04.2025", "14:25:09", DateOrder::DayMonth, "2025-04-24T14:25:09.000000000"},
        {"month by its name", "12/Mar/2019", "10:11:12", DateOrder::DayMonth, "2019-03-12T10:11:12.000000000"},
        {"month in capitals", "12-MAR-19", "10:11:12", DateOrder::MonthDay, "2019-03-12T10:11:12.000000000"},
        {"month's full name", "12 september 2019", "10:11:12", DateOrder::MonthDay, "2019-09-12T10:11:12.000000000"},
        {"month's name without separators", "12Mar2019", "10:11:12", DateOrder::DayMonth,
         "2019-03-12T10:11:12.000000000"},
        {"month's name in front", "May 2 2019", "10:11:12", DateOrder::DayMonth, "2019-05-02T10:11:12.000000000"},
        {"month's name behind the year", "2019-Dec-02", "10:11:12", DateOrder::DayMonth,
         "2019-12-02T10:11:12.000000000"},
        {"hour 24", "31/12/2022", "24:00:00.000", DateOrder::DayMonth, "2023-01-01T00:00:00.000000000"},
        {"leap day", "29/02/2000", "23:59:59.999999999", DateOrder::DayMonth, "2000-02-29T23:59:59.999999999"},
        {"leap second", "31/12/2016", "23:59:60", DateOrder::DayMonth, "2017-01-01T00:00:00.000000000"},
        {"before 1970", "31/12/1969", "23:59:59.999999", DateOrder::DayMonth, "1969-12-31T23:59:59.999999000"},
        {"first year", "01/01/1678", "00:00:00.5", DateOrder::DayMonth, "1678-01-01T00:00:00.500000000"},
        {"last year", "31/12/2261", "23:59:59", DateOrder::DayMonth, "2261-12-31T23:59:59.000000000"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(read(row.date, row.time, row.order), row.expected) << row.why;
}

TEST(ReadDateTime, KnowsEveryMonthByItsNameAndItsFirstLetters) {
    const char* const names[] = {"January", "February", "March",     "April",   "May",      "June",
                                 "July",    "August",   "September", "October", "November", "December"};
    int month = 0;
    for (const std::string name : names) {
        const std::string number = std::to_string(++month);
        const std::string expected = "2019-" + std::string(2 - number.size(), '0') + number + "-12T10:11:12.000000000";
        EXPECT_EQ(read(("12 " + name + " 2019").c_str(), "10:11:12", DateOrder::DayMonth), expected);
        EXPECT_EQ(read(("12-" + name.substr(0, 3) + "-2019").c_str(), "10:11:12", DateOrder::DayMonth), expected);
    }
}

TEST(ReadDateTime, TakesNothingElse) {
    const struct {
        const char* why;
        const char* date;
        const char* time;
    } rows[] = {
        {"month 44", "09/44/2025", "15:44:15.167000"},
        {"no leap year", "29/02/2023", "00:00:00"},
        {"no leap year of a century", "29/02/2100", "00:00:00"},
        {"day 31 of April", "31/04/2023", "00:00:00"},
        {"day 31 of June", "31/06/2023", "00:00:00"},
        {"day 31 of September", "31/09/2023", "00:00:00"},
        {"day 31 of November", "31/11/2023", "00:00:00"},
        {"day 0", "00/01/2023", "00:00:00"},
        {"behind hour 24", "01/01/2023", "24:00:00.000001"},
        {"hour 24 of the last day", "31/12/2261", "24:00:00"},
        {"leap second of the last day", "31/12/2261", "23:59:60"},
        {"hour 25", "01/01/2023", "25:00:00"},
        {"no month's name", "12-Abc-2019", "00:00:00"},
        {"two months' names", "Mar-Mar-2019", "00:00:00"},
        {"half of a month's name", "12-Janu-2019", "00:00:00"},
        {"a month's name and another character", "12_Mar_2019", "00:00:00"},
        {"day 31 of a month by its name", "31-Apr-2019", "00:00:00"},
        {"minute 60", "01/01/2023", "00:60:00"},
        {"second 61", "01/01/2023", "00:00:61"},
        {"empty", "", ""},
        {"no time", "01/01/2023", ""},
        {"letters", "aa/bb/cccc", "dd:ee:ff"},
        {"two numbers", "01/2023", "00:00:00"},
        {"year 1677", "31/12/1677", "00:00:00"},
        {"year 2262", "01/01/2262", "00:00:00"},
        {"three-digit year", "01/01/123", "00:00:00"},
        {"sign", "+1/01/2023", "00:00:00"},
        {"letters in the fraction", "01/01/2023", "00:00:00.1x"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(read(row.date, row.time, DateOrder::DayMonth), "none") << row.why;
}

// Seconds by python3: calendar.timegm((2011, 1, 12, 5, 55, 30)).
TEST(ReadDateTime, CountsNanosecondsSince1970) {
    const auto found = readDateTime("12/01/2011", "05:55:30.075011", DateOrder::DayMonth);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->instant.nanoseconds, 1294811730075011000);
    EXPECT_EQ(found->fractionDigits, 6);
    EXPECT_TRUE(found->isStandard);
}

TEST(ReadDateTime, KnowsAFormThatIsNotTheStandards) {
    EXPECT_FALSE(readDateTime("2025-04-24", "14:25:09", DateOrder::DayMonth)->isStandard);
    EXPECT_FALSE(readDateTime("24.04.2025", "14:25:09", DateOrder::DayMonth)->isStandard);
}

TEST(ReadDateTime, KnowsAYearOfTwoDigits) {
    EXPECT_TRUE(readDateTime("24/04/25", "14:25:09", DateOrder::DayMonth)->hasShortYear);
    EXPECT_FALSE(readDateTime("24/04/2025", "14:25:09", DateOrder::DayMonth)->hasShortYear);
}

TEST(ReadDateTime, KnowsTheEndOfADayAndALeapSecond) {
    EXPECT_TRUE(readDateTime("24/04/2025", "24:00:00", DateOrder::DayMonth)->isMidnight);
    EXPECT_FALSE(readDateTime("24/04/2025", "00:00:00", DateOrder::DayMonth)->isMidnight);
    EXPECT_TRUE(readDateTime("24/04/2025", "23:59:60", DateOrder::DayMonth)->isLeapSecond);
    EXPECT_FALSE(readDateTime("24/04/2025", "23:59:59", DateOrder::DayMonth)->isLeapSecond);
}

TEST(SplitDateAndTime, CutsBeforeTheHour) {
    const struct {
        const char* text;
        const char* date;
        const char* time;
        bool hasZone;
    } rows[] = {
        {"12/03/2019 10:11:12.5", "12/03/2019", "10:11:12.5", false},
        {"12/03/2019,10:11:12,5", "12/03/2019", "10:11:12,5", false},
        {" 2019-03-12T10:11:12 ", "2019-03-12", "10:11:12", false},
        {"2019-03-12T10:11:12Z", "2019-03-12", "10:11:12", true},
        {"2019-03-12 10:11:12-05:00", "2019-03-12", "10:11:12", true},
        {"12 Oct 2019  1:02:03", "12 Oct 2019", "1:02:03", false},
    };
    for (const auto& row : rows) {
        const auto parts = splitDateAndTime(row.text);
        ASSERT_TRUE(parts) << row.text;
        EXPECT_EQ(parts->date, row.date) << row.text;
        EXPECT_EQ(parts->time, row.time) << row.text;
        EXPECT_EQ(parts->hasZone, row.hasZone) << row.text;
    }
    for (const char* text : {"", ":", "12/03/2019", "10:11:12", " 10:11:12", "T10:11:12", "xT10:11:12", "1/2/3;1:2:3"})
        EXPECT_FALSE(splitDateAndTime(text)) << text;
}

TEST(DateTimeText, FollowsOrderAndDigits) {
    const Instant instant{1294811730075011123};
    EXPECT_EQ(dateTimeText(instant, DateOrder::DayMonth, false), "12/01/2011,05:55:30.075011");
    EXPECT_EQ(dateTimeText(instant, DateOrder::DayMonth, true), "12/01/2011,05:55:30.075011123");
    EXPECT_EQ(dateTimeText(instant, DateOrder::MonthDay, false), "01/12/2011,05:55:30.075011");
}

TEST(InstantText, ReachesTheEndsOfItsRange) {
    EXPECT_EQ(Instant{std::numeric_limits<std::int64_t>::max()}.text(), "2262-04-11T23:47:16.854775807");
    EXPECT_EQ(Instant{std::numeric_limits<std::int64_t>::min()}.text(), "1677-09-21T00:12:43.145224192");
    EXPECT_EQ(Instant{-1}.text(), "1969-12-31T23:59:59.999999999");
    EXPECT_EQ(Instant{}.text(), "1970-01-01T00:00:00.000000000");
}
