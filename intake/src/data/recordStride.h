#pragma once

#include "DataLayout.h"
#include "DataSource.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Bytes from one binary record to the next. By the standard that is the record's length; more if the data are exactly
/// as long as `declared` records with some padding behind each, and the sample numbers go on at that distance only.
std::size_t recordStride(const DataSource& source, const DataLayout& layout, std::uint64_t declared);

} // namespace OrvComtradeIntake
