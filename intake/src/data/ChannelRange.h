#pragma once

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <limits>

namespace OrvComtradeIntake {

/// What a range turns out to be about, once the values of its channel are known.
enum class RangeOf {
    Unknown,  ///< none, or one without width
    Encoding, ///< all that an encoding holds, which says nothing about the values
    Unit,     ///< values in the unit of the channel, which fill it while those recorded leave it
    Others,   ///< other values: too many of those recorded leave it
    Recorded  ///< the values as recorded, as it should be
};

/// The values of a channel, as recorded.
struct SeenValues {
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();
    std::uint64_t count = 0;
    std::uint64_t outside = 0; ///< of the tolerated range
};

/// The range of a channel's line (IEEE C37.111-2013, 7.4.4), as recorders mean it.
class ChannelRange {
public:
    /// `isGiven`: the line has a range.
    ChannelRange(const AnalogInfo& channel, bool isGiven);

    /// With what leaves it by rounding.
    double low() const { return _low; }
    double high() const { return _high; }

    /// Whether it says something about values.
    bool isCompared() const { return _isCompared; }

    /// Never true of one that is not compared.
    bool isLeftBy(double value) const { return _isCompared && (value < _low || value > _high); }

    RangeOf of(const SeenValues& values) const;

private:
    bool _isFilledInUnit(const SeenValues& values) const;

    const AnalogInfo* _channel;
    bool _isOfEncoding;
    bool _isCompared;
    double _low;
    double _high;
};

} // namespace OrvComtradeIntake
