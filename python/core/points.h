#pragma once

#include <cstddef>
#include <vector>

/// Values of a channel at ascending times (seconds), by the library's interpolation: a straight line between two
/// samples, with the channel's skew (seconds). The library is given samples of this one channel: `count` times and
/// values. NaN before the first sample, behind the last one, and where a value would rest on a missing one.
std::vector<double> interpolated(const double* times, const double* values, std::size_t count, double skew,
                                 const double* wanted, std::size_t wantedCount);
