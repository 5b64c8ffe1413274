#pragma once

#include "data/DataLayout.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Looks for bits in the last status word of records that are set but belong to no channel. The standard pads that word
/// with zeros (IEEE C37.111-2013, 8.6).
class UnusedBits {
public:
    explicit UnusedBits(const DataLayout& layout);

    /// Adds records in order. The first of them is sample `sample`; it is `stride` bytes from one to the next.
    void add(const char* records, std::size_t stride, std::size_t count, std::uint64_t sample);

    bool areSet() const { return _records != 0; } ///< whether any such bit is set

    void report(const ByteSource& data, std::size_t stride, Findings& findings) const;

private:
    std::size_t _statuses;
    std::size_t _offset;        ///< of the word in a record
    std::uint16_t _mask = 0;    ///< of the bits
    std::uint64_t _records = 0; ///< with some of them set
    std::uint64_t _firstSample = 0;
    std::uint16_t _firstBits = 0;
};

} // namespace OrvComtradeIntake
