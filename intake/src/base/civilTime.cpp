#include "base/civilTime.h"

namespace OrvComtradeIntake {

namespace {

constexpr std::int64_t kSecondsPerDay = 86'400;

constexpr std::int64_t kDaysPerEra = 146'097;  // 400 years
constexpr std::int64_t kDaysToEpoch = 719'468; // from 0000-03-01 to 1970-01-01

bool isLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysOfMonth(int year, int month) {
    if (month == 2) {
        return isLeapYear(year) ? 29 : 28;
    }
    const bool isShort = month == 4 || month == 6 || month == 9 || month == 11;
    return isShort ? 30 : 31;
}

bool isDate(const CivilTime& time) {
    return time.year >= 1678 && time.year <= 2261 && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
           time.day <= daysOfMonth(time.year, time.month);
}

bool isTimeOfDay(const CivilTime& time) {
    return time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 && time.second >= 0 &&
           time.second <= 60 && time.nanosecond >= 0 && time.nanosecond < kNanosecondsPerSecond;
}

// Years are counted from the first of March, so that the leap day is the last of its year.
std::int64_t daysSinceEpoch(const CivilTime& time) {
    const std::int64_t year = time.month > 2 ? time.year : time.year - 1;
    const std::int64_t era = year / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t month = time.month > 2 ? time.month - 3 : time.month + 9;
    const std::int64_t dayOfYear = (153 * month + 2) / 5 + time.day - 1;
    return era * kDaysPerEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - kDaysToEpoch;
}

void setDate(CivilTime& time, std::int64_t days) {
    days += kDaysToEpoch;
    const std::int64_t era = days / kDaysPerEra;
    const std::int64_t dayOfEra = days - era * kDaysPerEra;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t month = (5 * dayOfYear + 2) / 153;
    time.day = static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1);
    time.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
    time.year = static_cast<int>(yearOfEra + era * 400 + (time.month <= 2 ? 1 : 0));
}

std::int64_t floorDivide(std::int64_t number, std::int64_t divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

} // namespace

CivilTime civilTime(Instant instant) {
    const std::int64_t seconds = floorDivide(instant.nanoseconds, kNanosecondsPerSecond);
    const std::int64_t days = floorDivide(seconds, kSecondsPerDay);
    const std::int64_t ofDay = seconds - days * kSecondsPerDay;
    CivilTime time;
    setDate(time, days);
    time.hour = static_cast<int>(ofDay / 3600);
    time.minute = static_cast<int>(ofDay / 60 % 60);
    time.second = static_cast<int>(ofDay % 60);
    // The first second of an Instant's range begins before the range does: multiply what is left, not the seconds.
    const std::int64_t rest = instant.nanoseconds % kNanosecondsPerSecond;
    time.nanosecond = static_cast<int>(rest < 0 ? rest + kNanosecondsPerSecond : rest);
    return time;
}

std::optional<Instant> instantOf(const CivilTime& time) {
    if (!isDate(time) || !isTimeOfDay(time)) {
        return std::nullopt;
    }
    const std::int64_t ofDay = (time.hour * 60 + time.minute) * 60 + time.second;
    const std::int64_t seconds = daysSinceEpoch(time) * kSecondsPerDay + ofDay;
    return Instant{seconds * kNanosecondsPerSecond + time.nanosecond};
}

} // namespace OrvComtradeIntake
