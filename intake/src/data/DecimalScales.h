#pragma once

#include "base/decimal.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Chooses the power of ten by which each channel's decimal values become integers. Where digits would be lost to it, a
/// number beyond all that is measured does not count: as an integer a double need not hold it exactly.
class DecimalScales {
public:
    explicit DecimalScales(std::size_t channels) : _channels(channels) {}

    void add(std::size_t channel, const Decimal& value);

    /// One power per channel; empty if all are 0.
    std::vector<int> exponents() const;

private:
    struct Channel {
        int digits = 0;              ///< most digits after the point of any value
        bool needsScale = false;     ///< some value is not an integer of 64 bits
        int exponent = 0;            ///< of the values added last
        std::uint64_t mantissa = 0;  ///< the greatest of those with this exponent
        long double greatest = 0.0L; ///< the greatest of the others
        long double beyond = 0.0L;   ///< the greatest number beyond all that is measured; those above are of the rest

        long double magnitude() const;
    };

    static int _exponentOf(const Channel& channel);

    std::vector<Channel> _channels;
};

} // namespace OrvComtradeIntake
