#pragma once

#include <charconv>
#include <cmath>
#include <limits>

namespace OrvComtradeIntake {

/// Writes the shortest decimal that reads back as the same single; returns its end. Singles below full precision have
/// few digits, so their decimal would be up to a half off: theirs reads back as the same double, and has 23
/// characters at most.
inline char* writeSingle(char* at, char* end, float value) {
    const bool isFull = std::abs(value) >= std::numeric_limits<float>::min();
    return isFull ? std::to_chars(at, end, value).ptr : std::to_chars(at, end, static_cast<double>(value)).ptr;
}

} // namespace OrvComtradeIntake
