#pragma once

#include "Configuration.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Where the fields of a data line or record are (IEEE C37.111-2013, 8.4 and 8.6).
struct DataLayout {
    explicit DataLayout(const Configuration& configuration)
        : analogs(configuration.analog.size()), statuses(configuration.status.size()),
          valueLength(configuration.encoding == DataEncoding::Binary ? 2 : 4) {}

    static constexpr std::size_t kStampOffset = 4;
    static constexpr std::size_t kAnalogOffset = 8;

    std::size_t analogs;
    std::size_t statuses;
    std::size_t valueLength; ///< bytes of an analog value of a binary record

    std::size_t fields() const { return 2 + analogs + statuses; }
    std::size_t statusOffset() const { return kAnalogOffset + analogs * valueLength; }
    std::size_t statusWords() const { return (statuses + 15) / 16; }
    std::size_t recordLength() const { return statusOffset() + 2 * statusWords(); }
};

/// Of the lengths that the rates declare; tells a writer that gave lengths instead of sample numbers.
inline std::uint64_t sumOfRates(const Configuration& configuration) {
    std::uint64_t sum = 0;
    for (const RateLine& rate : configuration.rates) {
        sum = rate.endSample > UINT64_MAX - sum ? UINT64_MAX : sum + rate.endSample;
    }
    return sum;
}

/// Whether the end samples are lengths of segments, given the number of samples present. In what the intake marked the
/// last is their number, whatever the sum.
inline bool ratesAreLengths(const Configuration& configuration, std::uint64_t present) {
    return !configuration.ratesAreSettled && configuration.rates.size() > 1 && sumOfRates(configuration) == present;
}

constexpr std::uint32_t kMissingStamp = 0xFFFFFFFF;
constexpr std::uint16_t kMissing16 = 0x8000;
constexpr std::uint32_t kMissing32 = 0x80000000;
constexpr std::int64_t kMissingText = 99999;

} // namespace OrvComtradeIntake
