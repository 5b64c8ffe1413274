#pragma once

#include <OrvComtradeIntake/Header.h>

#include <cstddef>

/// Number of samples for a block: the more channels, the fewer samples, so that all blocks have similar sizes.
std::size_t samplesAtOnce(const OrvComtradeIntake::Header& header);
