#pragma once

#include <OrvComtradeIntake/Header.h>

#include <cstddef>

/// Samples of a block in which as much may happen as in any other: the fewer, the more channels there are.
std::size_t samplesAtOnce(const OrvComtradeIntake::Header& header);
