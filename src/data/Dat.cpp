#include "Dat.h"

#include "FilesHelper.h"

#include <OrvCommon.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <stdexcept>

namespace OrvComtradeLib {

namespace {

constexpr unsigned long kBlockLength = 256UL * 1024;         // bytes read from a binary file at a time
constexpr unsigned long kAddressSpace = 1UL << 47U;          // no more samples than these bytes hold

/// The records that the decoder reads must lie inside `recordLength`; a `Cfg` loaded from a file always satisfies this.
bool isRecordLayoutValid(const Cfg& cfg) {
    const auto analogBytes = static_cast<unsigned long>(cfg.analogValueLength) *
                             static_cast<unsigned int>(cfg.analogChannelCount);
    return 8UL + std::max<unsigned long>(analogBytes, cfg.analogValuesLength) + 2UL * cfg.statusWordCount <=
           cfg.recordLength;
}

} // namespace

} // namespace OrvComtradeLib
