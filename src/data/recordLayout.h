#pragma once

#include "Enums.h"

namespace OrvComtradeLib {

// A binary data record, little-endian (IEEE C37.111-1999, 6.6): sample number, time stamp, one analog value per
// channel, one 16-bit status word per 16 status channels, least significant bit first.

constexpr unsigned int kTimestampOffset = 4; ///< behind the sample number
constexpr unsigned int kAnalogOffset = 8;    ///< behind the time stamp: length of a record without channels
constexpr unsigned int kStatusWordLength = 2;
constexpr unsigned int kStatusBitsPerWord = 16;

/// Bytes of one analog value; 0 for a type that has no records.
constexpr unsigned int rawLength(Enums::DataFileType type) {
    switch (type) {
    case Enums::Binary:
        return 2;
    case Enums::Binary32:
    case Enums::Float32:
        return 4;
    default:
        return 0;
    }
}

/// Status words that hold so many channels.
constexpr unsigned int statusWords(unsigned int statusCount) {
    return statusCount / kStatusBitsPerWord + (statusCount % kStatusBitsPerWord != 0 ? 1 : 0);
}

} // namespace OrvComtradeLib
