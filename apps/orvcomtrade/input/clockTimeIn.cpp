#include "input/clockTimeIn.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>

using OrvComtradeIntake::Instant;

namespace {

/// Takes the parts of a text, as long as they are as they should be.
class ClockReader {
public:
    explicit ClockReader(std::string_view text) : _left(text) {}

    /// A number of so many digits, from `least` to `most`.
    std::int64_t number(std::size_t digits, std::int64_t least, std::int64_t most) {
        std::int64_t value = -1;
        const std::string_view part = _left.substr(0, digits);
        const bool hasSign = !part.empty() && part.front() == '-';
        const auto [stop, error] = std::from_chars(part.data(), part.data() + part.size(), value);
        const bool isNumber = error == std::errc() && stop == part.data() + digits && part.size() == digits && !hasSign;
        _isRight = _isRight && isNumber && value >= least && value <= most;
        _left.remove_prefix(part.size());
        return value;
    }

    /// Whether one of these characters comes next, which is then taken.
    bool takes(std::string_view characters) {
        const bool isNext = !_left.empty() && characters.find(_left.front()) != std::string_view::npos;
        _left.remove_prefix(isNext ? 1 : 0);
        return isNext;
    }

    void require(std::string_view characters) { _isRight = takes(characters) && _isRight; }

    std::size_t length() const { return _left.size(); }
    bool isRight() const { return _isRight; }

private:
    std::string_view _left;
    bool _isRight = true;
};

/// Days since 1970-01-01 of a date of the Gregorian calendar.
std::int64_t daysOf(std::int64_t year, std::int64_t month, std::int64_t day) {
    const std::int64_t shifted = month < 3 ? year - 1 : year; // years that end with February
    const std::int64_t dayOfYear = (153 * (month + (month < 3 ? 9 : -3)) + 2) / 5 + day - 1;
    return shifted * 365 + shifted / 4 - shifted / 100 + shifted / 400 + dayOfYear - 719468;
}

std::int64_t lengthOf(std::int64_t year, std::int64_t month) {
    return month == 12 ? 31 : daysOf(year, month + 1, 1) - daysOf(year, month, 1);
}

} // namespace

std::optional<Instant> clockTimeIn(const std::string& text) {
    constexpr std::int64_t nanosecondsPerSecond = 1000000000;
    ClockReader reader(text);
    const std::int64_t year = reader.number(4, 1678, 2261); // of an Instant
    reader.require("-");
    const std::int64_t month = reader.number(2, 1, 12);
    reader.require("-");
    const std::int64_t day = reader.number(2, 1, reader.isRight() ? lengthOf(year, month) : 31);
    std::int64_t seconds = daysOf(year, month, day) * 86400;
    std::int64_t nanoseconds = 0;
    if (reader.length() != 0) {
        reader.require("T ");
        seconds += reader.number(2, 0, 23) * 3600;
        reader.require(":");
        seconds += reader.number(2, 0, 59) * 60;
        if (reader.takes(":")) {
            seconds += reader.number(2, 0, 59);
        }
        if (reader.takes(".")) {
            const std::size_t digits = reader.length();
            nanoseconds = digits > 9 ? -1 : reader.number(digits, 0, nanosecondsPerSecond);
            for (std::size_t i = digits; i < 9; ++i) {
                nanoseconds *= 10;
            }
        }
    }
    const bool isTime = reader.isRight() && reader.length() == 0 && nanoseconds >= 0;
    return isTime ? std::optional(Instant{seconds * nanosecondsPerSecond + nanoseconds}) : std::nullopt;
}
