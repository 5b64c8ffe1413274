#pragma once

#include "src/data/littleEndian.h"
#include "src/data/recordLayout.h"

#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

inline OrvComtradeLib::Enums::DataFileType libraryType(DataType type) {
    switch (type) {
    case DataType::Binary:
        return OrvComtradeLib::Enums::Binary;
    case DataType::Binary32:
        return OrvComtradeLib::Enums::Binary32;
    case DataType::Float32:
        return OrvComtradeLib::Enums::Float32;
    case DataType::Ascii:
        break;
    }
    return OrvComtradeLib::Enums::Ascii;
}

/// Where the fields of a data line or record are (IEEE C37.111-2013, 8.4 and 8.6).
struct DataLayout {
    explicit DataLayout(const Header& header) : DataLayout(header, header.dataType) {}
    DataLayout(const Header& header, DataType dataType)
        : analogs(header.analog.size()), statuses(header.status.size()), type(dataType) {}

    static constexpr std::size_t kStampOffset = OrvComtradeLib::kTimestampOffset;
    static constexpr std::size_t kAnalogOffset = OrvComtradeLib::kAnalogOffset;
    static constexpr std::size_t kStatesPerWord = OrvComtradeLib::kStatusBitsPerWord;

    std::size_t analogs;
    std::size_t statuses;
    DataType type;

    std::size_t fields() const { return 2 + analogs + statuses; }
    std::size_t valueLength() const { return OrvComtradeLib::rawLength(libraryType(type)); }
    std::size_t statusWords() const { return (statuses + kStatesPerWord - 1) / kStatesPerWord; }
    std::size_t statusOffset() const { return kAnalogOffset + analogs * valueLength(); }
    std::size_t recordLength() const { return statusOffset() + statusWords() * OrvComtradeLib::kStatusWordLength; }
};

/// The sample number or the stamp of a record, which begins at `bytes` (IEEE C37.111-2013, 8.6).
inline std::uint32_t fieldAt(const char* bytes) {
    return OrvComtradeLib::readLittleEndian<std::uint32_t>(bytes);
}

/// Where a sample is, for findings.
struct SamplePlace {
    std::uint64_t sample = 0;   ///< 0-based
    std::size_t line = 0;       ///< 1-based, or 0: a binary record
    std::uint64_t position = 0; ///< of the line or record, in the data
};

} // namespace OrvComtradeIntake
