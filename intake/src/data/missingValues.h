#pragma once

#include "src/data/littleEndian.h"

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

// Bits that mean a missing value (IEEE C37.111-2013, 8.6). A single means one if it is NaN (its bits are above those of
// infinity), or if it is the most negative finite number.
constexpr std::uint16_t kMissing16 = 0x8000;
constexpr std::uint32_t kMissing32 = 0x80000000;
constexpr std::uint32_t kMissingSingle = 0x7FC00000; // NaN
constexpr std::uint32_t kInfinity = 0x7F800000;
constexpr std::uint32_t kLargestNegative = 0xFF7FFFFF;

/// Whether the bits of an analog value mean a missing value, by type.
struct Mark16 {
    using Bits = std::uint16_t;
    static Bits bits(const char* value) { return OrvComtradeLib::readLittleEndian<Bits>(value); }
    static bool isMark(Bits bits) { return bits == kMissing16; }
};

struct Mark32 {
    using Bits = std::uint32_t;
    static Bits bits(const char* value) { return OrvComtradeLib::readLittleEndian<Bits>(value); }
    static bool isMark(Bits bits) { return bits == kMissing32; }
};

struct MarkFloat {
    using Bits = std::uint32_t;
    static Bits bits(const char* value) { return OrvComtradeLib::readLittleEndian<Bits>(value); }
    /// Without a branch, for the sake of vector units.
    static bool isMark(Bits bits) { return ((bits & 0x7FFFFFFFU) > kInfinity) | (bits == kLargestNegative); }
};

constexpr std::size_t kBetweenLooks = 64; // records that are checked one by one after one that may have a mark

/// The analog values of consecutive records.
struct AnalogBlock {
    const char* values = nullptr; ///< of the first record
    std::size_t stride = 0;       ///< bytes from those of one record to those of the next
    std::size_t length = 0;       ///< bytes, of one record
    std::size_t records = 0;
};

/// Whether any of the values in `length` bytes is a mark. Without a branch, for vector units.
template <class Mark> bool mayHaveMark(const char* values, std::size_t length) {
    typename Mark::Bits found = 0;
    for (std::size_t at = 0; at < length; at += sizeof found) {
        found = static_cast<typename Mark::Bits>(found | (Mark::isMark(Mark::bits(values + at)) ? 1 : 0));
    }
    return found != 0;
}

/// How many records from `from` on certainly have no mark. If the distance of records is a multiple of the length of a
/// value, the bytes between are checked as if they were values: that is faster than to leave them out.
template <class Mark> std::size_t countClean(const AnalogBlock& block, std::size_t from) {
    constexpr std::size_t length = sizeof(typename Mark::Bits);
    constexpr std::size_t atOnce = 1024; // bytes
    const std::size_t records = std::max<std::size_t>(atOnce / block.stride, 1);
    std::size_t clean = 0;
    while (block.stride % length == 0 && block.length != 0 && from + clean + records < block.records &&
           !mayHaveMark<Mark>(block.values + (from + clean) * block.stride, records * block.stride)) {
        clean += records;
    }
    return clean;
}

/// The first record from `from` on that has a mark for a missing value, or the number of records.
template <class Mark> std::size_t findMark(const AnalogBlock& block, std::size_t from) {
    std::size_t next = from; // where it is worth checking many at once again
    for (; from < block.records; ++from) {
        if (from == next) {
            from += countClean<Mark>(block, from);
            next = from + kBetweenLooks;
        }
        if (mayHaveMark<Mark>(block.values + from * block.stride, block.length)) {
            break;
        }
    }
    return from;
}

/// The number that means a missing value in ASCII data: 99999 since 1999 (IEEE C37.111-2013, 8.4), 999999 in 1991. In
/// 1991 it is an ordinary value of channels whose range contains it.
class MissingCode {
public:
    static constexpr std::int64_t kUsual = 99999;
    static constexpr std::int64_t kOld = 999999;

    explicit MissingCode(const Header& header) : _number(header.revision < 1999 ? kOld : kUsual) {
        for (const AnalogInfo& channel : header.analog) {
            const auto code = static_cast<double>(kOld);
            _isValue.push_back(_number == kOld && channel.min < code && channel.max > code);
        }
    }

    bool isMissing(std::int64_t value, std::size_t channel) const { return value == _number && !_isValue[channel]; }

    std::int64_t number() const { return _number; }

private:
    std::int64_t _number;
    std::vector<bool> _isValue; ///< by channel
};

/// Collects the samples without a value, channel by channel, as runs. Samples must come in order.
class MissingRuns {
public:
    explicit MissingRuns(std::size_t channels) : _open(channels) {}

    void add(std::size_t channel, std::uint64_t sample);

    /// All runs before sample `samples`, by channel, then sample.
    std::vector<MissingRun> take(std::uint64_t samples);

private:
    std::vector<MissingRun> _open; ///< the last run of each channel
    std::vector<MissingRun> _closed;
};

/// Some of the runs of a recording, in place.
struct MissingRange {
    const MissingRun* first = nullptr;
    const MissingRun* last = nullptr; ///< behind the last one

    const MissingRun* begin() const { return first; }
    const MissingRun* end() const { return last; }
    bool empty() const { return first == last; }
};

/// The runs of one channel that have samples from `first` up to, but not including, `end`. `all` must be in the order
/// of channels, then samples.
MissingRange runsOf(const std::vector<MissingRun>& all, std::size_t channel, std::uint64_t first = 0,
                    std::uint64_t end = UINT64_MAX);

/// Looks up whether values of a channel are missing, sample by sample in order. The runs must outlive it.
class MissingCursor {
public:
    MissingCursor(const std::vector<MissingRun>& all, std::size_t channel) : _left(runsOf(all, channel)) {}
    MissingCursor(std::vector<MissingRun>&& all, std::size_t channel) = delete;

    /// Samples must come in order.
    bool isMissing(std::uint64_t sample) {
        while (!_left.empty() && _left.first->sample + _left.first->count <= sample) {
            ++_left.first;
        }
        return !_left.empty() && _left.first->sample <= sample;
    }

    /// Whether no later sample lacks a value.
    bool isEmpty() const { return _left.empty(); }

private:
    MissingRange _left;
};

} // namespace OrvComtradeIntake
