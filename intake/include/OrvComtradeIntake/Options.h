#pragma once

#include "Folders.h"

#include <cstdint>
#include <memory>
#include <string>

namespace OrvComtradeIntake {

/// Side of the instrument transformers.
enum class Side {
    Recorded, ///< each channel as its line declares; of a channel: its line declares none
    Primary,  ///< line side
    Secondary ///< relay side
};

/// "primary" or "secondary"; `none` where no side is declared.
const char* sideWord(Side side, const char* none = "");

/// Limits of what `open` reads, so that a damaged or hostile recording cannot fill the memory. A recording beyond a
/// limit is not read (except for findings), and a finding names the limit. No real recording comes near the defaults;
/// docs/intake.md lists the greatest ones known.
struct Limits {
    std::uint64_t cfgBytes = 16UL * 1024 * 1024;  ///< of a `.cfg`, or the section of a `.cff`
    std::uint64_t textBytes = 16UL * 1024 * 1024; ///< of a `.hdr` or `.inf`, or such a section, each
    std::uint64_t channels = 50000;               ///< analog and status channels together
    std::uint64_t rates = 10000;                  ///< sampling rates
    std::uint64_t samples = 1000000000;           ///< samples in the data, whatever is declared
    std::uint64_t decodedBytes =
        1024UL * 1024 * 1024;       ///< of data that stand as base64 text, which memory holds decoded
    std::uint64_t findings = 10000; ///< beyond them only those of severity Error are reported
};

/// What the caller of `open` chooses.
struct Options {
    Side side = Side::Recorded;     ///< side of the values that `load` and `columns` give
    std::string encoding;           ///< of the texts, as iconv names it ("CP1251"); empty: detected
    bool acceptsAnyNumbers = false; ///< read data even if neither their sample numbers nor their stamps make sense
    Limits limits;                  ///< of what is read
    std::shared_ptr<const Folders> folders; ///< of the recordings that are opened with it; none: listed where needed
};

} // namespace OrvComtradeIntake
