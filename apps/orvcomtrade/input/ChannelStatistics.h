#pragma once

#include <cstdint>
#include <optional>

/// Statistics of the values of an analog channel over some samples. Every sample has the same weight; missing values do
/// not count.
class ChannelStatistics {
public:
    void add(double value, double time);
    void addMissing() { ++_missing; }

    std::uint64_t samples() const { return _samples; } ///< samples that have a value
    std::uint64_t missing() const { return _missing; }

    // All of these are 0 if there are no values.
    double min() const { return _min; }
    double max() const { return _max; }
    double peak() const { return _peak; }         ///< value of the greatest magnitude, with its sign; the first of them
    double peakTime() const { return _peakTime; } ///< time of that value
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
