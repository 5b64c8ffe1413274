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

/// Reads the selected columns as a whole. Reuses the storage of `into` if it is large enough. Throws
/// `std::out_of_range` for a channel that does not exist.
void readColumns(const ColumnSource& source, const Selection& selection, Columns& into);

/// The same in blocks of at most `most` samples, until `onBlock` returns false.
void readColumns(const ColumnSource& source, const Selection& selection, std::size_t most,
                 const std::function<bool(const Columns&)>& onBlock);

/// Fills `dat` with the samples that the library would read for `dat.cfg`. Returns false if the data have become
/// shorter.
bool fillSamples(const ByteSource& data, const Header& header, const DataFacts& facts, OrvComtradeLib::Dat& dat);

} // namespace OrvComtradeIntake
