#pragma once

#include "cfg/DataFacts.h"
#include "data/DataLayout.h"
#include "src/config/scaling.h"

#include <cstddef>
#include <vector>

namespace OrvComtradeIntake {

/// By what the library makes values of raw ones, for a channel.
struct Scaling {
    double a = 1.0;
    double b = 0.0;
    double unit = 1.0; ///< of the prefix of its unit
};

inline double scaledBy(double raw, const Scaling& scaling) {
    return OrvComtradeLib::scaled(raw, scaling.a, scaling.b, scaling.unit);
}

/// Consecutive binary records in memory.
struct Records {
    const char* first = nullptr;
    std::size_t stride = 0; ///< bytes from one to the next
    std::size_t count = 0;
};

/// Puts the analog values of records into the columns of some channels, the first one at `into`, each `distance` values
/// behind the one before: raw, or by `scaling`, which has one for each. A tile of records at a time, which stays in the
/// cache; channels that stand side by side are turned over several at a time by vector instructions. To the last bit
/// what one value at a time gives.
void decodeColumns(const Records& records, const DataLayout& layout, const DataFacts& facts,
                   const std::vector<std::size_t>& channels, const std::vector<Scaling>& scaling, double* into,
                   std::size_t distance);

} // namespace OrvComtradeIntake
