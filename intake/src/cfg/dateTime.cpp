#include "cfg/dateTime.h"

#include "base/characters.h"
#include "base/civilTime.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::int64_t kNanosecondsPerDay = 86'400'000'000'000;

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), isDigit);
}

std::optional<int> readDigits(std::string_view text, std::size_t most) {
    text = trimmed(text);
    if (text.empty() || text.size() > most || !isDigits(text)) {
        return std::nullopt;
    }
    int number = 0;
    for (const char digit : text) {
        number = number * 10 + (digit - '0');
    }
    return number;
}

std::vector<std::string_view> partsOf(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find_first_of(separators);
        parts.push_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

std::optional<int> readYear(std::string_view text) {
    const std::optional<int> year = readDigits(text, 4);
    if (!year || (text.size() != 2 && text.size() != 4)) {
        return std::nullopt;
    }
    if (text.size() == 4) {
        return year;
    }
    return *year < 70 ? *year + 2000 : *year + 1900;
}

// The English name, or its first three letters, in any case.
std::optional<int> readMonthName(std::string_view text) {
    constexpr std::array<std::string_view, 12> names = {"january",   "february", "march",    "april",
                                                        "may",       "june",     "july",     "august",
                                                        "september", "october",  "november", "december"};
    const std::string lower = lowerCase(text);
    for (std::size_t month = 0; month < names.size(); ++month) {
        if (lower == names[month] || (lower.size() == 3 && lower == names[month].substr(0, 3))) {
            return static_cast<int>(month) + 1;
        }
    }
    return std::nullopt;
}

// Runs of digits and of letters, whatever separators stand between them. Nothing where other characters are in it.
std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        const auto kind = isDigit(text.front()) ? isDigit : isLetter;
        const auto* const end = std::find_if_not(text.begin(), text.end(), kind);
        const auto length = static_cast<std::size_t>(end - text.begin());
        if (length != 0) {
            words.push_back(text.substr(0, length));
        } else if (std::string_view("/-. ").find(text.front()) == std::string_view::npos) {
            return {};
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return words;
}

// "12-MAR-2019", "Mar 12 2019", "2019-Mar-12": the month is beyond doubt, and so is the day beside a year.
bool readDateWithName(std::string_view text, CivilTime& time) {
    const std::vector<std::string_view> words = wordsOf(text);
    if (words.size() != 3) {
        return false;
    }
    const bool isMonthFirst = isLetter(words[0].front());
    const bool isYearFirst = !isMonthFirst && words[0].size() == 4;
    const auto month = readMonthName(words[isMonthFirst ? 0 : 1]);
    const auto day = readDigits(words[isMonthFirst ? 1 : isYearFirst ? 2 : 0], 2);
    const auto year = readYear(words[isYearFirst ? 0 : 2]);
    if (!month || !day || !year) {
        return false;
    }
    time.year = *year;
    time.month = *month;
    time.day = *day;
    return true;
}

bool readDate(std::string_view text, DateOrder order, CivilTime& time, ReadDateTime& read) {
    if (std::any_of(text.begin(), text.end(), isLetter)) {
        read.isStandard = false;
        return readDateWithName(text, time);
    }
    const std::vector<std::string_view> parts = partsOf(text, "/-.");
    if (parts.size() != 3) {
        return false;
    }
    const bool isYearFirst = parts[0].size() == 4;
    read.isStandard = !isYearFirst && text.find_first_of("-.") == std::string_view::npos;
    read.hasShortYear = !isYearFirst && parts[2].size() == 2;
    const auto year = readYear(isYearFirst ? parts[0] : parts[2]);
    const auto first = readDigits(isYearFirst ? parts[1] : parts[0], 2);
    const auto second = readDigits(isYearFirst ? parts[2] : parts[1], 2);
    if (!year || !first || !second) {
        return false;
    }
    const bool isMonthFirst = isYearFirst || order == DateOrder::MonthDay;
    time.year = *year;
    time.month = isMonthFirst ? *first : *second;
    time.day = isMonthFirst ? *second : *first;
    return true;
}

bool readFraction(std::string_view text, CivilTime& time, int& digits) {
    if (!isDigits(text)) {
        return false;
    }
    digits = static_cast<int>(std::min<std::size_t>(text.size(), 9));
    for (std::size_t index = 0; index < 9; ++index) {
        time.nanosecond = time.nanosecond * 10 + (index < text.size() ? text[index] - '0' : 0);
    }
    return true;
}

bool readTime(std::string_view text, CivilTime& time, int& fractionDigits) {
    const std::vector<std::string_view> parts = partsOf(text, ":");
    if (parts.size() != 3) {
        return false;
    }
    const std::size_t point = parts[2].find('.');
    const auto hour = readDigits(parts[0], 2);
    const auto minute = readDigits(parts[1], 2);
    const auto second = readDigits(parts[2].substr(0, point), 2);
    if (!hour || !minute || !second) {
        return false;
    }
    time.hour = *hour;
    time.minute = *minute;
    time.second = *second;
    return point == std::string_view::npos || readFraction(parts[2].substr(point + 1), time, fractionDigits);
}

bool isMidnightOfNextDay(const CivilTime& time) {
    return time.hour == 24 && time.minute == 0 && time.second == 0 && time.nanosecond == 0;
}

} // namespace

std::optional<ReadDateTime> readDateTime(std::string_view date, std::string_view time, DateOrder order) {
    CivilTime civil;
    ReadDateTime read;
    if (!readDate(trimmed(date), order, civil, read) || !readTime(trimmed(time), civil, read.fractionDigits)) {
        return std::nullopt;
    }
    read.isMidnight = isMidnightOfNextDay(civil);
    read.isLeapSecond = civil.second == 60;
    civil.hour = read.isMidnight ? 0 : civil.hour;
    const std::optional<Instant> instant = instantOf(civil);
    if (!instant) {
        return std::nullopt;
    }
    read.instant.nanoseconds = instant->nanoseconds + (read.isMidnight ? kNanosecondsPerDay : 0);
    // The next day, or second, may be the first beyond the years that are read.
    return instantOf(civilTime(read.instant)) ? std::optional(read) : std::nullopt;
}

std::optional<DateAndTime> splitDateAndTime(std::string_view text) {
    text = trimmed(text);
    std::size_t hour = std::min(text.find(':'), text.size());
    while (hour > 0 && isDigit(text[hour - 1])) {
        --hour;
    }
    if (hour < 2 || hour == text.size()) {
        return std::nullopt;
    }
    const char separator = text[hour - 1];
    const bool isLetterT = (separator == 'T' || separator == 't') && isDigit(text[hour - 2]);
    if (separator != ' ' && separator != ',' && !isLetterT) {
        return std::nullopt;
    }
    const std::string_view time = text.substr(hour);
    const std::size_t zone = time.find_first_of("Zz+-");
    return DateAndTime{trimmed(text.substr(0, hour - 1)), time.substr(0, zone), zone != std::string_view::npos};
}

std::string dateTimeText(Instant instant, DateOrder order, bool withNanoseconds) {
    const CivilTime time = civilTime(instant);
    const bool isMonthFirst = order == DateOrder::MonthDay;
    std::array<char, 96> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%02d/%02d/%04d,%02d:%02d:%02d.%0*d",
                                     isMonthFirst ? time.month : time.day, isMonthFirst ? time.day : time.month,
                                     time.year, time.hour, time.minute, time.second, withNanoseconds ? 9 : 6,
                                     withNanoseconds ? time.nanosecond : time.nanosecond / 1000);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

} // namespace OrvComtradeIntake
