#pragma once

#include "Output.h"

#include <optional>
#include <string>

/// What the command line asks of one channel.
struct PointsRequest {
    std::string path;
    std::string channel;
    double start = 0.0;         ///< seconds
    std::optional<double> end;  ///< seconds; none means the last sample
    std::optional<double> rate; ///< points per second; none means about 1000 points in all
    bool status = false;        ///< a status channel
};

/// Prints the channel's plot points as CSV.
void printPoints(const PointsRequest& request, Output& out);
