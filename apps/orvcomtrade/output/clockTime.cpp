#include "output/clockTime.h"

#include <cmath>

using OrvComtradeIntake::Instant;

namespace {

constexpr std::int64_t kNanosecondsPerMicrosecond = 1000;
constexpr double kMostSeconds = 9e9; // some 285 years, the range of the clock

} // namespace

std::optional<Instant> instantAfter(Instant start, double seconds) {
    if (!(std::fabs(seconds) < kMostSeconds)) {
        return std::nullopt;
    }
    std::int64_t sum = 0;
    if (__builtin_add_overflow(start.nanoseconds, std::llround(seconds * kNanosecondsPerSecond), &sum)) {
        return std::nullopt;
    }
    return Instant{sum};
}

std::string clockText(Instant instant) {
    std::string text = instant.text();
    if (instant.nanoseconds % kNanosecondsPerMicrosecond == 0) {
        text.resize(text.size() - 3);
    }
    return text;
}
