#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <optional>
#include <string>

/// What the command line asks of one channel.
struct PointsRequest {
    std::string channel;
    double start = 0.0;         ///< seconds
    std::optional<double> end;  ///< seconds; none means the last sample
    std::optional<double> rate; ///< points per second; none means about 1000 points in all
    bool status = false;        ///< a status channel
};

/// Throws a Failure for an invalid range or rate.
void checkRange(const PointsRequest& wanted);

/// Prints the channel's plot points as CSV, or as a JSON line. A point between samples without a value has none.
void printPoints(const Entry& entry, const Request& request, const PointsRequest& wanted, Job& out);
