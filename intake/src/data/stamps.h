#pragma once

#include "dataSurvey.h"
#include "decimal.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// Place of a stamp, for findings.
struct StampPlace {
    std::uint64_t sample = 0; ///< 0-based
    std::size_t line = 0;     ///< of a text, or 0
    std::uint64_t offset = 0; ///< in the file
};

/// By which power of ten the stamps of a text become integers.
class StampScale {
public:
    void add(std::int64_t stamp);
    void add(const Decimal& stamp);

    bool hasFractions() const { return _digits > 0; }

    /// The smallest that makes each of them an integer, or the greatest at which they still fit into 64 bits.
    int exponent() const;

    /// Whether some are no integers even so.
    bool anyRounded(int exponent) const { return _anyRounded || _digits > exponent; }

private:
    int _digits = 0; ///< behind the point
    std::uint64_t _greatest = 0;
    bool _anyRounded = false;
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
    StampSurvey(const DataSource& source, bool isText, int exponent)
        : _source(source), _isText(isText), _exponent(exponent), _unwrapper(exponent) {}

    /// The next stamp as the file gives it, times the power, or nothing: it is missing.
    void add(std::optional<std::int64_t> stamp, const StampPlace& place);

    /// Says in the survey what must be written.
    void settle(DataSurvey& survey);

    /// Tells what there was to see, once that is settled.
    void tell(const DataSurvey& survey, Findings& findings) const;

private:
    struct Step {
        std::uint64_t length = 0;
        StampPlace place;
    };
    struct Places {
        std::uint64_t count = 0;
        StampPlace first;
    };

    void _note(Places& places, const StampPlace& place);
    void _addKnown(std::int64_t stamp, const StampPlace& place);
    void _closeGap(std::int64_t next, std::uint64_t sample);
    void _addStep(const Step& step);
    void _judge(const Step& step);
    void _judgeFirstSteps();
    void _fillEnds(DataSurvey& survey);
    void _setScale(DataSurvey& survey) const;
    void _tellConstant(Findings& findings) const;
    Finding _finding(Severity severity, const char* code, const Places& places) const;

    const DataSource& _source;
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

/// "written times 100", "written divided by 10", or nothing where they keep their unit.
std::string writtenStamps(const DataSurvey& survey);

/// Gives the stamps to write, sample by sample.
class StampWriter {
public:
    explicit StampWriter(const DataSurvey& survey) : _survey(survey), _unwrapper(survey.stampExponent) {}

    /// For the stamp as the file gives it, times ten to the power of DataSurvey::stampExponent, or nothing.
    std::uint64_t next(std::optional<std::int64_t> stamp);

private:
    std::uint64_t _written(std::int64_t stamp) const;

    const DataSurvey& _survey;
    StampUnwrapper _unwrapper;
    std::uint64_t _sample = 0;
    std::size_t _fill = 0;
};

} // namespace OrvComtradeIntake
