#pragma once

#include <cstddef>
#include <vector>

/// Values of a channel at ascending times (seconds), by the library's interpolation: a straight line between two
/// samples, with the channel's skew (seconds). The library gets samples of this channel only: `count` times and
/// values. The result is NaN before the first sample, after the last one, and where it would depend on a missing value.
std::vector<double> interpolated(const double* times, const double* values, std::size_t count, double skew,
                                 const double* wanted, std::size_t wantedCount);
