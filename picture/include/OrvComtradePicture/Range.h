#pragma once

namespace OrvComtradePicture {

/// From one number to another, both included. Times are in seconds, values in base units.
struct Range {
    double from = 0.0;
    double to = 0.0;

    double length() const { return to - from; }
    bool holds(double number) const { return number >= from && number <= to; }
};

inline bool operator==(Range left, Range right) {
    return left.from == right.from && left.to == right.to;
}

inline bool operator!=(Range left, Range right) {
    return !(left == right);
}

} // namespace OrvComtradePicture
