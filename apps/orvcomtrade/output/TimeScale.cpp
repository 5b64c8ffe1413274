#include "output/TimeScale.h"

#include "output/Failure.h"
#include "output/clockTime.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <system_error>

using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;

namespace {

constexpr int kMinutesPerHour = 60;
constexpr int kMostHours = 24;
constexpr std::int64_t kNanosecondsPerMinute = 60000000000;

/// Digits at the beginning of a text, which are taken away from it.
std::optional<int> takeNumber(std::string_view& text) {
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || text.front() == '-') {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

[[noreturn]] void refuseTime(const std::string& path, const char* reason) {
    throw Failure(kRecordingProblem, fmt::format("{}: {}", shownPath(path), reason));
}

std::string offsetText(int minutes) {
    const int size = std::abs(minutes);
    return fmt::format("{}{:02}:{:02}", minutes < 0 ? '-' : '+', size / kMinutesPerHour, size % kMinutesPerHour);
}

} // namespace

std::optional<int> utcOffset(const std::string& timeCode) {
    std::string_view text = timeCode;
    const bool isBehind = !text.empty() && text.front() == '-';
    if (isBehind || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    const std::optional<int> hours = text.empty() ? std::nullopt : takeNumber(text);
    if (!hours || *hours > kMostHours) {
        return std::nullopt;
    }
    int minutes = 0;
    if (!text.empty() && (text.front() == 'h' || text.front() == 'H')) {
        text.remove_prefix(1);
        minutes = text.empty() ? 0 : takeNumber(text).value_or(kMinutesPerHour);
    }
    if (!text.empty() || minutes >= kMinutesPerHour) {
        return std::nullopt;
    }
    const int offset = *hours * kMinutesPerHour + minutes;
    return isBehind ? -offset : offset;
}

TimeScale::TimeScale(const Header& header, TimeBase base, const std::string& path)
    : _base(base), _start(header.start), _offset(utcOffset(header.timeCode)) {
    if (base == TimeBase::Relative) {
        return;
    }
    if (!header.start) {
        refuseTime(path, "the time of its start is not known");
    }
    if (base == TimeBase::Trigger) {
        if (!header.trigger) {
            refuseTime(path, "the time of its trigger is not known");
        }
        const std::int64_t distance = header.trigger->nanoseconds - header.start->nanoseconds;
        _zero = static_cast<double>(distance) / kNanosecondsPerSecond;
    }
    if (base == TimeBase::Utc && !_offset) {
        refuseTime(path, "no time code is recorded, so UTC is not known; --time absolute shows the recorder's clock");
    }
}

double TimeScale::shown(double time) const {
    return _base == TimeBase::Trigger ? roundedTime(time - _zero) : time;
}

std::string TimeScale::text(double time) const {
    if (!isClock()) {
        return fmt::format("{}", shown(time));
    }
    std::optional<Instant> instant = instantAfter(*_start, time);
    if (!instant) {
        return {};
    }
    if (_base == TimeBase::Utc) {
        const std::int64_t offset = *_offset * kNanosecondsPerMinute;
        return __builtin_sub_overflow(instant->nanoseconds, offset, &instant->nanoseconds) ? ""
                                                                                           : clockText(*instant) + "Z";
    }
    return clockText(*instant) + (_offset ? offsetText(*_offset) : "");
}

double roundedTime(double time) {
    constexpr double steps = 1e12;
    constexpr double most = 4000.0; // seconds, whose steps a double counts exactly
    return std::fabs(time) < most ? std::round(time * steps) / steps : time;
}
