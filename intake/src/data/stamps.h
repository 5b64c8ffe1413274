#pragma once

#include "dataSurvey.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

/// Place of a stamp, for findings.
struct StampPlace {
    std::uint64_t sample = 0; ///< 0-based
    std::size_t line = 0;     ///< of a text, or 0
    std::uint64_t offset = 0; ///< in the file
};

/// Makes of stamps that count modulo 2^32 a count that goes on.
class StampUnwrapper {
public:
    /// A stamp lower than the one before by more than half the range has wrapped; one that is as much higher has
    /// stepped back over a wrap. Stamps that need more than 32 bits (in a text) are taken as they are.
    std::uint64_t unwrap(std::uint64_t stamp);

    std::uint64_t wraps() const { return _wraps; }

private:
    std::uint64_t _before = 0;
    std::uint64_t _passed = 0; ///< added to each stamp: a multiple of 2^32
    std::uint64_t _wraps = 0;
    bool _any = false;
};

/// Looks at the stamps of a recording whose times are in its data.
class StampSurvey {
public:
    StampSurvey(const DataSource& source, bool isText) : _source(source), _isText(isText) {}

    /// The next stamp as the file gives it, or nothing: it is missing.
    void add(std::optional<std::uint64_t> stamp, const StampPlace& place);

    /// Tells what there was to see and says in the survey what must be written.
    void finish(DataSurvey& survey, Findings& findings);

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
    void _addKnown(std::uint64_t stamp, const StampPlace& place);
    void _closeGap(std::uint64_t next, std::uint64_t sample);
    void _addStep(const Step& step);
    void _judge(const Step& step);
    void _judgeFirstSteps();
    void _fillEnds(DataSurvey& survey);
    void _setDivisor(DataSurvey& survey) const;
    void _tell(const DataSurvey& survey, Findings& findings) const;
    Finding _finding(Severity severity, const char* code, const Places& places) const;

    const DataSource& _source;
    bool _isText;
    StampUnwrapper _unwrapper;
    std::optional<std::uint64_t> _last; ///< unwrapped
    std::uint64_t _lastSample = 0;
    std::uint64_t _lastStep = 0;
    std::optional<double> _firstStep; ///< per sample
    std::uint64_t _first = 0;
    std::uint64_t _firstSample = 0;
    std::uint64_t _samples = 0;
    std::uint64_t _greatest = 0;
    std::uint64_t _greatestBack = 0; ///< longest step backwards, less 1
    std::vector<StampFill> _fills;
    std::vector<Step> _firstSteps; ///< until there are enough to know the usual one
    std::uint64_t _usualStep = 0;
    Places _missing;
    Places _wrapped;
    Places _wide;
    Places _backwards;
    Places _gaps;
};

/// Gives the stamps to write, sample by sample.
class StampWriter {
public:
    explicit StampWriter(const DataSurvey& survey) : _survey(survey) {}

    /// For the stamp as the file gives it, or nothing.
    std::uint64_t next(std::optional<std::uint64_t> stamp);

private:
    const DataSurvey& _survey;
    StampUnwrapper _unwrapper;
    std::uint64_t _sample = 0;
    std::size_t _fill = 0;
};

} // namespace OrvComtradeIntake
