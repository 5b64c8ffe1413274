#pragma once

#include "base/decimal.h"
#include "cfg/DataFacts.h"
#include "data/DataLayout.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

constexpr double kMicrosecondsPerSecond = 1e6;
constexpr std::int64_t kStampRange = std::int64_t{1} << 32U; ///< of a binary record: its stamps count modulo this
constexpr std::uint32_t kMissingStamp = 0xFFFFFFFF;          ///< of a binary record (8.6)

/// Finds the power of ten by which the stamps of ASCII data become integers.
class StampScale {
public:
    void add(std::int64_t stamp);
    void add(const Decimal& stamp);

    /// The smallest power that makes each stamp an integer, or the greatest at which all still fit into 64 bits.
    int exponent() const;

private:
    int _digits = 0; ///< after the point
    std::uint64_t _greatest = 0;
};

/// Turns stamps that count modulo 2^32 into a count that never wraps.
class StampUnwrapper {
public:
    /// For stamps that are multiplied by ten to the power of `exponent`.
    explicit StampUnwrapper(int exponent);

    /// A stamp that is lower than the one before by more than half the range has wrapped. One that is higher by as much
    /// has gone back over a wrap. Stamps of ASCII data that need more than 32 bits are unchanged.
    std::int64_t unwrap(std::int64_t stamp);

    std::uint64_t wraps() const { return _wraps; }
    std::int64_t range() const { return _range; }

private:
    bool _isInRange(std::int64_t stamp) const { return stamp > -_range && stamp < _range; }

    std::int64_t _range; ///< of stamps of 32 bits
    std::int64_t _before = 0;
    std::int64_t _passed = 0; ///< added to each stamp: a multiple of the range
    std::uint64_t _wraps = 0;
    bool _any = false;
};

/// Looks at the stamps of a recording whose times are in its data.
class StampSurvey {
public:
    /// For stamps that are multiplied by ten to the power of `exponent`.
    StampSurvey(bool isText, int exponent) : _isText(isText), _exponent(exponent), _unwrapper(exponent) {}

    /// Adds the next stamp of the file, already multiplied; nothing if it is missing.
    void add(std::optional<std::int64_t> stamp, const SamplePlace& place);

    /// How to turn the stamps into whole numbers that count from 0 without wrapping.
    StampPlan plan();

    /// Whether the library gives the same times for the stamps as they are in the file.
    bool areStandard() const;

    /// Adds the findings. To be called after `plan`.
    void report(const ByteSource& source, Findings& findings) const;

private:
    struct Step {
        std::uint64_t length = 0;
        SamplePlace place;
    };
    struct Places {
        std::uint64_t count = 0;
        SamplePlace first;
        std::uint64_t step = 0;
    };

    static void _note(Places& places, const SamplePlace& place);
    void _addKnown(std::int64_t stamp, const SamplePlace& place);
    void _closeGap(std::int64_t next, std::uint64_t sample);
    void _addStep(const Step& step);
    void _judge(const Step& step);
    void _judgeFirstSteps();
    void _fillEnds(StampPlan& plan);
    void _scale(StampPlan& plan) const;

    bool _isText;
    int _exponent;
    StampUnwrapper _unwrapper;
    std::optional<std::int64_t> _last; ///< unwrapped
    std::uint64_t _lastSample = 0;
    std::uint64_t _lastStep = 0;
    std::optional<double> _firstStep; ///< per sample
    std::int64_t _first = 0;
    std::uint64_t _firstSample = 0;
    std::uint64_t _samples = 0;
    std::int64_t _lowest = 0;
    std::int64_t _greatest = 0;
    std::uint64_t _greatestBack = 0; ///< longest step backwards, less 1
    bool _hasStandardForm = true;    ///< the library can read them as they are written
    std::vector<StampFill> _fills;
    std::vector<Step> _firstSteps; ///< until there are enough to know the usual one
    std::uint64_t _usualStep = 0;
    Places _missing;
    Places _wrapped;
    Places _wide;
    Places _negative;
    Places _backwards;
    Places _gaps;
};

/// Applies a plan to stamps, sample by sample.
class PlannedStamps {
public:
    explicit PlannedStamps(const StampPlan& plan) : _plan(plan), _unwrapper(plan.exponent) {}

    /// The planned stamp of the next sample. `stamp` is that of the file multiplied by ten to the power of
    /// StampPlan::exponent, or nothing if it is missing.
    std::uint32_t next(std::optional<std::int64_t> stamp);

private:
    std::uint64_t _planned(std::int64_t stamp) const;

    const StampPlan& _plan;
    StampUnwrapper _unwrapper;
    std::uint64_t _sample = 0;
    std::size_t _fill = 0;
};

} // namespace OrvComtradeIntake
