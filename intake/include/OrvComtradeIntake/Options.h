#pragma once

#include "Folders.h"

#include <cstdint>
#include <memory>
#include <string>

namespace OrvComtradeIntake {

/// Side of the instrument transformers.
enum class Side {
    Recorded, ///< asked for: the side that each channel's line declares; returned: the line declares none
    Primary,  ///< line side
    Secondary ///< relay side
};

/// "primary" or "secondary"; `none` for Side::Recorded.
const char* sideWord(Side side, const char* none = "");

/// Limits of what `open` reads, so that a damaged or hostile recording cannot fill the memory. A recording beyond a
/// limit is not read, except for `textBytes`, beyond which a text is left out, and `findings`, which only shortens the
/// list. A finding names the limit. No real recording comes near the defaults; docs/intake.md lists the greatest known.
struct Limits {
    std::uint64_t cfgBytes = 16UL * 1024 * 1024;       ///< bytes of a `.cfg`, or of that section of a `.cff`
    std::uint64_t textBytes = 16UL * 1024 * 1024;      ///< bytes of a `.hdr`, of an `.inf`, or of such a section
    std::uint64_t channels = 50000;                    ///< analog and status channels together
    std::uint64_t rates = 10000;                       ///< sampling rates
    std::uint64_t samples = 1000000000;                ///< samples in the data, whatever is declared
    std::uint64_t decodedBytes = 1024UL * 1024 * 1024; ///< bytes of base64 data once decoded: memory holds them
    std::uint64_t findings = 10000;                    ///< findings listed; errors are listed beyond it
};

/// What the caller of `open` chooses.
struct Options {
    Side side = Side::Recorded;     ///< side of the values that `load` and `columns` give
    std::string encoding;           ///< of the texts, as iconv names it ("CP1251"); empty: detected
    bool acceptsAnyNumbers = false; ///< read data even if neither their sample numbers nor their stamps make sense
    Limits limits;
    std::shared_ptr<const Folders> folders; ///< shared by the recordings of a folder; null: each lists it if needed
};

} // namespace OrvComtradeIntake
