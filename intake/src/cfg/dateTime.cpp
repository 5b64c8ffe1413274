#include "dateTime.h"

#include "civilTime.h"
#include "numbers.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace OrvComtradeIntake {

namespace {

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
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

bool readDate(std::string_view text, DateOrder order, CivilTime& time, bool& isStandard) {
    const std::vector<std::string_view> parts = partsOf(text, "/-.");
    if (parts.size() != 3) {
        return false;
    }
    const bool isYearFirst = parts[0].size() == 4;
    isStandard = !isYearFirst && text.find_first_of("-.") == std::string_view::npos;
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

} // namespace

std::optional<ReadDateTime> readDateTime(std::string_view date, std::string_view time, DateOrder order) {
    CivilTime civil;
    ReadDateTime read;
    if (!readDate(trimmed(date), order, civil, read.isStandard) ||
        !readTime(trimmed(time), civil, read.fractionDigits)) {
        return std::nullopt;
    }
    const std::optional<Instant> instant = instantOf(civil);
    if (!instant) {
        return std::nullopt;
    }
    read.instant = *instant;
    return read;
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
