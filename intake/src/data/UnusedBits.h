#pragma once

#include "data/DataLayout.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Looks for bits of the last status word of records that no channel has: the standard pads it with zeros (8.6).
class UnusedBits {
public:
    explicit UnusedBits(const DataLayout& layout);

    /// Records in order; the first of these is sample `sample`, and `stride` bytes lie between them.
    void add(const char* records, std::size_t stride, std::size_t count, std::uint64_t sample);

    bool areSet() const { return _records != 0; } ///< some of them

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
