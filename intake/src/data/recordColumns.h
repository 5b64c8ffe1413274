#pragma once

#include "cfg/DataFacts.h"
#include "data/DataLayout.h"
#include "src/config/scaling.h"

#include <cstddef>
#include <vector>

namespace OrvComtradeIntake {

/// How the library scales the raw values of a channel.
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

/// Puts the analog values of records into the columns of some channels. The first column is at `into`; it is `distance`
/// values from one to the next. Values are raw if `scaling` is empty; otherwise it has an element per channel. Results
/// are the same to the last bit as for one value at a time.
///
/// It works on a tile of records at a time, which stays in the cache. Neighbouring channels are transposed several at a
/// time by vector instructions.
void decodeColumns(const Records& records, const DataLayout& layout, const DataFacts& facts,
                   const std::vector<std::size_t>& channels, const std::vector<Scaling>& scaling, double* into,
                   std::size_t distance);

} // namespace OrvComtradeIntake
