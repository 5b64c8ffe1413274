#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/Blocks.h"
#include "data/DataWriter.h"

#include <OrvComtradeIntake/Form.h>

#include <functional>
#include <memory>

namespace OrvComtradeIntake {

/// How a recording is written: the header, and the data that go with it.
struct OutputPlan {
    Header header;
    DataOutput output;
};

/// Begins to read blocks of all samples and channels.
using ReadBlocks = std::function<std::unique_ptr<BlockReader>()>;

/// For the library: raw values as they are decoded. The header is not used.
OutputPlan planForLibrary(const Header& header, const DataFacts& facts);

/// For whoever follows the standard, in the revision and data type of the form. Values stay exactly as recorded where
/// the type can hold them; else raw values are scaled to its range, with `a` to match, and rounded. Looks at all values
/// where that decides, in the blocks that `read` begins to give; it is empty for a recording without data. Throws
/// `std::invalid_argument` for a form that there is not.
OutputPlan planForStandard(const ReadBlocks& read, const ReadCfg& cfg, const DataFacts& facts, const Form& form);

} // namespace OrvComtradeIntake
