#pragma once

#include "input/Recording.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// How much values may differ.
struct Tolerance {
    double absolute = 0.0; ///< in the base unit of a channel
    double relative = 0.0; ///< share of the channel's greatest value in the first recording
};

/// A field that differs between the headers.
struct FieldDifference {
    std::string field; ///< "station", or "IA: unit"
    std::string left;
    std::string right;
};

/// A sample in which the values or states of a channel differ.
struct SampleDifference {
    std::uint64_t sample = 0; ///< 0-based
    double time = 0.0;        ///< in the first recording
    double left = 0.0;        ///< NaN: missing
    double right = 0.0;
};

/// A channel that both recordings have.
struct ChannelComparison {
    std::string name;
    std::string unit;                        ///< empty for a status channel
    double largest = 0.0;                    ///< largest difference of values that both recordings have
    double largestTime = 0.0;                ///< time of the first sample with that difference
    std::uint64_t beyond = 0;                ///< samples that differ beyond the tolerance, or are missing on one side
    std::optional<SampleDifference> first{}; ///< the first of these
};

/// What two recordings have in common, and where they differ. Channels are paired by name, and in their order if
/// several have the same name.
struct Comparison {
    std::vector<FieldDifference> header;
    std::vector<std::string> onlyLeft; ///< names of channels
    std::vector<std::string> onlyRight;
    std::vector<ChannelComparison> analog;
    std::vector<ChannelComparison> status;
    std::uint64_t samples = 0; ///< number of samples that both have; these are compared

    bool areValuesEqual() const;
};

Comparison compareRecordings(const Recording& left, const Recording& right, const Tolerance& tolerance);
