#pragma once

#include "input/Recording.h"

/// Gives the selected columns of a recording that the library has loaded, in blocks of at most `most` samples. Values
/// are never raw and never missing. Throws `std::out_of_range` for a channel that does not exist.
void columnsOf(const OrvComtradeLib::Comtrade& comtrade, const OrvComtradeIntake::Selection& selection,
               std::size_t most, const OnBlock& onBlock);
