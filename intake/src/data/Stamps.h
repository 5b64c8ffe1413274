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

/// By which power of ten the stamps of a text become integers.
class StampScale {
public:
    void add(std::int64_t stamp);
    void add(const Decimal& stamp);

    /// The smallest that makes each of them an integer, or the greatest at which they still fit into 64 bits.
    int exponent() const;

private:
    int _digits = 0; ///< behind the point
    std::uint64_t _greatest = 0;
};

/// Makes of stamps that count modulo 2^32 a count that goes on.
class StampUnwrapper {
public:
    /// For stamps times ten to the power of `exponent`.
    explicit StampUnwrapper(int exponent);

    /// A stamp lower than the one before by more than half the range has wrapped; one that is as much higher has
    /// stepped back over a wrap. Stamps that need more than 32 bits (in a text) are taken as they are.
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
    /// For stamps times ten to the power of `exponent`.
    StampSurvey(bool isText, int exponent) : _isText(isText), _exponent(exponent), _unwrapper(exponent) {}

    /// The next stamp as the file gives it, times the power, or nothing: it is missing.
    void add(std::optional<std::int64_t> stamp, const SamplePlace& place);

    /// How to make them whole numbers that go on from 0.
    StampPlan plan();

    /// Whether the library takes the stamps as they are for the same times.
    bool areStandard() const;

    /// Reports what there was to see, once that is planned.
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
    bool _hasStandardForm = true;    ///< they need not be written anew
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

/// Gives the stamps by a plan, sample by sample.
class PlannedStamps {
public:
    explicit PlannedStamps(const StampPlan& plan) : _plan(plan), _unwrapper(plan.exponent) {}

    /// For the stamp as the file gives it, times ten to the power of StampPlan::exponent, or nothing.
    std::uint32_t next(std::optional<std::int64_t> stamp);

private:
    std::uint64_t _planned(std::int64_t stamp) const;

    const StampPlan& _plan;
    StampUnwrapper _unwrapper;
    std::uint64_t _sample = 0;
    std::size_t _fill = 0;
};

} // namespace OrvComtradeIntake
