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

/// What the values of an analog channel are in.
struct ValuesOf {
    std::string unit; ///< without a prefix ("V" for "kV")
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded;
};

/// Takes a block of samples, which is valid during the call; false ends the reading.
using OnBlock = std::function<bool(const OrvComtradeIntake::Columns&)>;

/// What a picture needs of a recording, whoever reads it.
struct Source {
    const OrvComtradeIntake::Header& header; ///< outlives the source
    std::vector<ValuesOf> analog;            ///< one per analog channel

    /// Gives the selected columns in blocks of at most so many samples, in order.
    std::function<void(const OrvComtradeIntake::Selection&, std::size_t, const OnBlock&)> columns;
};

/// Of a recording that the intake has opened and that is readable; it must outlive the source.
Source sourceOf(const OrvComtradeIntake::Opened& opened);

} // namespace OrvComtradePicture
