#pragma once

#include "input/Recording.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// How far values may be apart.
struct Tolerance {
    double absolute = 0.0; ///< in the base unit of a channel
    double relative = 0.0; ///< of the channel's greatest value in the first recording
};

/// A field of the headers that is not the same.
struct FieldDifference {
    std::string field; ///< "station", or "IA: unit"
    std::string left;
    std::string right;
};

/// Where values or states of a channel are not the same.
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
    double largest = 0.0;                    ///< difference of two values, of those that both have
    double largestTime = 0.0;                ///< of the first such sample
    std::uint64_t beyond = 0;                ///< samples beyond the tolerance, or missing on one side
    std::optional<SampleDifference> first{}; ///< of these
};

/// What two recordings have in common, and what not. Channels go together by their names; of several of one name, in
/// their order.
struct Comparison {
    std::vector<FieldDifference> header;
    std::vector<std::string> onlyLeft; ///< names of channels
    std::vector<std::string> onlyRight;
    std::vector<ChannelComparison> analog;
    std::vector<ChannelComparison> status;
    std::uint64_t samples = 0; ///< that both have, which are compared one by one

    bool areValuesEqual() const;
};

Comparison compareRecordings(const Recording& left, const Recording& right, const Tolerance& tolerance);
