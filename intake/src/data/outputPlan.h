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

/// Makes a reader of blocks of all samples and channels.
using ReadBlocks = std::function<std::unique_ptr<BlockReader>()>;

/// Plan for the library: raw values as they are decoded. The plan has no header.
OutputPlan planForLibrary(const Header& header, const DataFacts& facts);

/// Plan for Reader::Standard, in the revision and data type of the form. Values stay exactly as recorded if the type
/// can hold them. Otherwise raw values are scaled to its range, with `a` to match, and rounded. If the plan depends on
/// the values, all of them are looked at through `read`, which is empty for a recording without data. Throws
/// `std::invalid_argument` for a form that does not exist.
OutputPlan planForStandard(const ReadBlocks& read, const ReadCfg& cfg, const DataFacts& facts, const Form& form);

} // namespace OrvComtradeIntake
