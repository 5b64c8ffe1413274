#pragma once

#include "input/Recording.h"

/// The selected columns of what the library has loaded, in blocks of at most `most` samples. Values are never raw, none
/// is missing. Throws `std::out_of_range` for a channel that there is not.
void columnsOf(const OrvComtradeLib::Comtrade& comtrade, const OrvComtradeIntake::Selection& selection,
               std::size_t most, const OnBlock& onBlock);
