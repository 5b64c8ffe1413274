#pragma once

#include "Dat.h"
#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/ColumnMaker.h"
#include "files/ByteSource.h"

#include <OrvComtradeIntake/Columns.h>

#include <cstddef>
#include <functional>

namespace OrvComtradeIntake {

/// The selected columns as a whole, in the storage of `into` where it suffices. Throws `std::out_of_range` for a
/// channel that there is not.
void readColumns(const ColumnSource& source, const Selection& selection, Columns& into);

/// The same in blocks of at most `most` samples, until `onBlock` returns false.
void readColumns(const ColumnSource& source, const Selection& selection, std::size_t most,
                 const std::function<bool(const Columns&)>& onBlock);

/// The same values, times and states as the library's samples, for `dat.cfg`. False if the data have become shorter.
bool fillSamples(const ByteSource& data, const Header& header, const DataFacts& facts, OrvComtradeLib::Dat& dat);

} // namespace OrvComtradeIntake
