#pragma once

#include "UnsetAllocator.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace OrvComtradeIntake {

/// Consecutive samples in which an analog channel has no value (IEEE C37.111-2013, 8.4 and 8.6).
struct MissingRun {
    std::size_t channel = 0;  ///< 0-based analog channel
    std::uint64_t sample = 0; ///< 0-based first sample
    std::uint64_t count = 0;  ///< samples
};

/// A change of a status channel.
struct StateChange {
    std::uint64_t sample = 0; ///< 0-based sample from which on the channel has the state
    bool state = false;
};

/// The part of a recording to read. Channels are 0-based, in any order, and each may be named more than once.
struct Selection {
    bool allAnalog = true;                                           ///< every analog channel, whatever `analog` says
    bool allStatus = true;                                           ///< every status channel, whatever `status` says
    std::vector<std::size_t> analog;                                 ///< analog channels, if not all
    std::vector<std::size_t> status;                                 ///< status channels, if not all
    std::uint64_t first = 0;                                         ///< 0-based first sample
    std::uint64_t count = std::numeric_limits<std::uint64_t>::max(); ///< samples, at most
    bool raw = false;          ///< analog values as recorded, which the caller scales by `a` and `b`
    bool missingAsNan = false; ///< NaN for missing analog values; otherwise the scaled marker of the file
};

/// One block of values. Its memory is not set to zero before the values are written into it.
using Values = std::vector<double, UnsetAllocator<double>>;

/// Columns of a recording: the values that `Opened::load` gives sample by sample, here channel by channel. Moving the
/// object leaves its memory where it is, so pointers into `analog` stay valid as long as the object moved to.
struct Columns {
    std::uint64_t first = 0;  ///< 0-based first sample
    std::size_t samples = 0;  ///< length of every column
    std::vector<double> time; ///< seconds, one per sample
    Values analog;            ///< values in base units in one block: `samples` of the first column, then of the next
    std::vector<double> a;    ///< one per analog column: value = raw * a + b
    std::vector<double> b;    ///< one per analog column
    std::vector<std::vector<StateChange>>
        states;                      ///< one per status column; the first entry is the state of sample `first`
    std::vector<MissingRun> missing; ///< by column (`channel` is the index of the column), then sample of the recording

    /// The values of an analog column, `samples` of them.
    const double* column(std::size_t index) const { return analog.data() + index * samples; }
};

} // namespace OrvComtradeIntake
