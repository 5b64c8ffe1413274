#pragma once

#include "data/SamplePlace.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

/// Watches whether the numbers of the samples go on. Tolerated, since recorders do so: a first number other than 1; the
/// same step other than 1 throughout, 0 among them; a new start where the sampling rate changes; a count that begins
/// again behind 65535, 99999, 999999 or 2^32 - 1; numbers that are missing.
class NumberWatch {
public:
    /// `segments`: 0-based samples at which another sampling rate begins, in order.
    explicit NumberWatch(std::vector<std::uint64_t> segments) : _segments(std::move(segments)) {}

    void add(std::optional<std::int64_t> number, const SamplePlace& place);

    /// The number that should come next, or `further` places behind that, once one has come.
    std::optional<std::int64_t> expected(std::int64_t further = 0) const {
        return _last ? std::optional(_behind(*_last, 1 + further)) : std::nullopt;
    }

    /// So many samples had the numbers that were expected.
    void pass(std::uint64_t samples);

    /// Whether most numbers follow no rule.
    bool areSenseless() const { return _known > 2 && 2 * _jumps > _known; }

    /// The first numbers, for a finding: "1, 1179569, 65534".
    std::string firstNumbers() const;

    void report(const ByteSource& source, Findings& findings) const;

private:
    /// So many steps behind a number, whatever that is.
    std::int64_t _behind(std::int64_t number, std::int64_t steps) const {
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) +
                                         static_cast<std::uint64_t>(_step) * static_cast<std::uint64_t>(steps));
    }

    bool _isTolerated(std::int64_t before, std::int64_t number, std::uint64_t sample);

    std::vector<std::uint64_t> _segments;
    std::size_t _segment = 0;
    std::vector<std::int64_t> _firstNumbers;
    std::optional<std::int64_t> _last;
    std::uint64_t _lastSample = 0;
    std::int64_t _step = 1;
    std::optional<std::int64_t> _oddStep; ///< the step before, if it was not the usual one
    std::uint64_t _known = 0;
    std::uint64_t _jumps = 0;
    SamplePlace _firstJump;
    std::int64_t _before = 0; ///< numbers at the first jump
    std::int64_t _after = 0;
};

} // namespace OrvComtradeIntake
