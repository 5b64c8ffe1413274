#pragma once

#include "decimal.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

/// Values that lose digits: those of a channel are written times one power of ten, and together they need more digits
/// than a double holds.
struct Rounding {
    std::size_t channel = 0;    ///< the first such one
    std::uint64_t channels = 0; ///< how many there are
    int before = 0;             ///< digits before the point of that channel's greatest value
    int behind = 0;             ///< digits behind the point, the most of its values
    int unit = 0;               ///< its values are rounded to multiples of this power of ten
};

/// Chooses the power of ten by which each channel's decimal values become integers.
class DecimalScales {
public:
    explicit DecimalScales(std::size_t channels) : _channels(channels) {}

    void add(std::size_t channel, const Decimal& value);

    /// One power per channel; empty if all are 0.
    std::vector<int> exponents() const;

    /// Nothing if no value loses digits by it.
    std::optional<Rounding> rounding() const;

private:
    struct Channel {
        int digits = 0;              ///< behind the point, the most of any value
        bool needsScale = false;     ///< some value is no integer of 64 bits
        bool rounded = false;        ///< some value had more digits than a mantissa holds
        int exponent = 0;            ///< of the values added last
        std::uint64_t mantissa = 0;  ///< the greatest of those with this exponent
        long double greatest = 0.0L; ///< of the others

        long double magnitude() const;
        bool losesDigits() const { return rounded || (needsScale && _exponentOf(*this) < digits); }
    };

    static int _exponentOf(const Channel& channel);

    std::vector<Channel> _channels;
};

} // namespace OrvComtradeIntake
