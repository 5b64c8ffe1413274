#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace OrvComtradeIntake {
class Opened;
}

namespace OrvComtradePicture {

/// Unit and side of the values of an analog channel.
struct ValuesOf {
    std::string unit; ///< without a prefix ("V" for "kV")
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded;
};

/// Takes a block of samples, which is valid during the call. Reading ends when it returns false.
using OnBlock = std::function<bool(const OrvComtradeIntake::Columns&)>;

/// A recording to draw. `sourceOf` makes one; a program with values of its own can fill one in.
struct Source {
    const OrvComtradeIntake::Header& header; ///< must outlive the source
    std::vector<ValuesOf> analog;            ///< one per analog channel

    /// Gives the selected columns block by block, in order. The number is the most samples of a block.
    std::function<void(const OrvComtradeIntake::Selection&, std::size_t, const OnBlock&)> columns;
};

/// The source of a readable recording, which must outlive it.
Source sourceOf(const OrvComtradeIntake::Opened& opened);

} // namespace OrvComtradePicture
