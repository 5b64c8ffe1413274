#pragma once

#include <cstdint>
#include <optional>

/// What the values of an analog channel are like over some samples, each of which counts once. A missing value does not
/// count.
class ChannelStatistics {
public:
    void add(double value, double time);
    void addMissing() { ++_missing; }

    std::uint64_t samples() const { return _samples; } ///< with a value
    std::uint64_t missing() const { return _missing; }

    // Of samples() values, so 0 where there are none.
    double min() const { return _min; }
    double max() const { return _max; }
    double peak() const { return _peak; }         ///< value of the greatest size, the first of these
    double peakTime() const { return _peakTime; } ///< its time
    double mean() const;                          ///< sum of x / n
    double rms() const;                           ///< square root of (sum of x^2 / n), direct component included

private:
    std::uint64_t _samples = 0;
    std::uint64_t _missing = 0;
    double _min = 0.0;
    double _max = 0.0;
    double _peak = 0.0;
    double _peakTime = 0.0;
    long double _sum = 0.0L;
    long double _squares = 0.0L;
};
