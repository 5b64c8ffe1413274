#include "data/DecimalScales.h"

#include <algorithm>
#include <cmath>

namespace OrvComtradeIntake {

namespace {

constexpr long double kExactInDouble = 9007199254740992.0L;   // 2^53
constexpr std::uint64_t kBeyondMeasure = 100'000'000'000'000; // a double has room for one digit behind the point

/// What a text may have as an integer, and be read (kLargestDecimalExponent), even times ten for its missing values.
constexpr long double kReadInText = 1e58L;

/// The greatest power up to `most` by which such numbers stay below the limit.
int exponentFor(long double greatest, int most, long double limit) {
    int exponent = most;
    while (greatest * std::pow(10.0L, static_cast<long double>(exponent)) >= limit) {
        --exponent;
    }
    return exponent;
}

bool isBeyondMeasure(const Decimal& value) {
    const bool isSmall = value.exponent <= 0 && value.mantissa < kBeyondMeasure;
    return !isSmall && value.magnitude() >= static_cast<long double>(kBeyondMeasure);
}

} // namespace

long double DecimalScales::Channel::magnitude() const {
    return std::max(greatest, Decimal{mantissa, exponent, false, false}.magnitude());
}

void DecimalScales::add(std::size_t channel, const Decimal& value) {
    Channel& scale = _channels[channel];
    if (-value.exponent > scale.digits || !scale.needsScale) {
        const Decimal number = value.exponent == 0 ? value : value.normalised();
        scale.digits = std::max(scale.digits, -number.exponent);
        scale.needsScale = scale.needsScale || !number.isInteger();
    }
    if (isBeyondMeasure(value)) {
        scale.beyond = std::max(scale.beyond, value.magnitude());
        return;
    }
    if (value.exponent != scale.exponent) { // seldom: devices write a channel's values with as many digits
        scale.greatest = scale.magnitude();
        scale.exponent = value.exponent;
        scale.mantissa = 0;
    }
    scale.mantissa = std::max(scale.mantissa, value.mantissa);
}

/// One digit more than needed, so that no scaled value is 99999, which would be a missing one.
int DecimalScales::_exponentOf(const Channel& channel) {
    if (!channel.needsScale) {
        return 0;
    }
    const long double greatest = channel.magnitude();
    const int most = channel.digits + 1;
    const int ofAll = exponentFor(std::max(greatest, channel.beyond), most, kExactInDouble);
    if (ofAll >= channel.digits || greatest == 0.0L) {
        return ofAll;
    }
    return std::min(exponentFor(greatest, most, kExactInDouble), exponentFor(channel.beyond, most, kReadInText));
}

std::vector<int> DecimalScales::exponents() const {
    std::vector<int> exponents;
    for (const Channel& channel : _channels) {
        exponents.push_back(_exponentOf(channel));
    }
    const bool none = std::all_of(exponents.begin(), exponents.end(), [](int exponent) { return exponent == 0; });
    return none ? std::vector<int>() : exponents;
}

} // namespace OrvComtradeIntake
