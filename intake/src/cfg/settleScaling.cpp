#include "CfgLine.h"
#include "cfgWriting.h"
#include "units.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

/// One analog channel and its place.
class ChannelScaling {
public:
    ChannelScaling(AnalogLine& channel, bool hasRatio, std::size_t line, const CfgText& text, Findings& findings)
        : _channel(channel), _hasRatio(hasRatio), _line(line), _text(text), _findings(findings) {}

    void settleUnit() {
        BaseUnit base = baseUnit(_channel.unit);
        if (base.name != _channel.unit) {
            _tell(_channel.unitOffset, "uu",
                  {Severity::Warning, "unit-prefix", base.name, "the prefix multiplied into a and b", true},
                  _channel.unit);
            _multiply(base.factor);
            _channel.unit = std::move(base.name);
        } else if (isScaledByLibrary(_channel.unit)) {
            _tell(_channel.unitOffset, "uu",
                  {Severity::Warning, "unit-not-prefixed", "a unit in whose first letter the library sees no prefix",
                   "written in brackets", true},
                  _channel.unit);
            _channel.unit = '[' + _channel.unit + ']';
        }
    }

    void settleSide(Side wanted) {
        if (!_hasRatio || _channel.side == Side::Recorded) {
            _leave(wanted);
            return;
        }
        if (_channel.side == Side::Primary) {
            _settlePrimary(wanted);
        } else {
            _settleSecondary(wanted);
        }
    }

private:
    bool _isRatio() const {
        return std::isfinite(_channel.primary) && std::isfinite(_channel.secondary) && _channel.primary != 0.0 &&
               _channel.secondary != 0.0;
    }

    // A ratio is of no use without the side, and beside the S that is written it would mislead.
    void _leave(Side wanted) {
        if (wanted != Side::Recorded) {
            _tell(_channel.sideOffset, "PS",
                  {Severity::Warning, "side", "a channel of which the side is known", "", false}, "values as recorded");
        }
        _channel.primary = 1.0;
        _channel.secondary = 1.0;
    }

    void _settlePrimary(Side wanted) {
        if (_isRatio() && _channel.primary == _channel.secondary) {
            return;
        }
        if (wanted == Side::Secondary && _isRatio()) {
            _tellSide("secondary values", "a and b multiplied by the ratio, as the library would convert a alone");
            _checkRatio();
            _convert(_channel.secondary, _channel.primary);
            _channel.side = Side::Secondary;
            return;
        }
        _tellPrimary();
        if (!_isRatio()) {
            _tellUnusable(wanted);
        }
        _channel.primary = 1.0;
        _channel.secondary = 1.0;
    }

    void _settleSecondary(Side wanted) {
        if (wanted != Side::Primary || (_isRatio() && _channel.primary == _channel.secondary)) {
            return;
        }
        if (!_isRatio()) {
            _tellUnusable(wanted);
            return;
        }
        _tellSide("primary values", "a and b multiplied by the ratio, which is written as 1 to 1");
        _checkRatio();
        _convert(_channel.primary, _channel.secondary);
        _channel.side = Side::Primary;
        _channel.primary = 1.0;
        _channel.secondary = 1.0;
    }

    void _tellPrimary() {
        _tell(_channel.sideOffset, "PS",
              {Severity::Warning, "side", "primary values with ratio 1, which the library leaves as they are",
               "the ratio written as 1 to 1", true},
              "P" + _ratioText());
    }

    void _tellSide(const char* expected, const char* done) {
        _tell(_channel.sideOffset, "PS", {Severity::Warning, "side", expected, done, true},
              (_channel.side == Side::Primary ? "P" : "S") + _ratioText());
    }

    void _tellUnusable(Side wanted) {
        _tell(_channel.primaryOffset, "primary",
              {Severity::Warning, "ratio", "a ratio of two numbers other than 0",
               wanted == Side::Recorded ? "" : "values left as recorded", false},
              _ratioText().substr(1));
    }

    // A transformer that makes more of less is rather one whose sides are given in different units.
    void _checkRatio() {
        if (std::abs(_channel.primary) < std::abs(_channel.secondary)) {
            _tell(_channel.primaryOffset, "primary",
                  {Severity::Warning, "ratio", "a primary factor greater than the secondary, in the same unit", "",
                   false},
                  _ratioText().substr(1));
        }
    }

    std::string _ratioText() const {
        return ' ' + numberText(_channel.primary) + " to " + numberText(_channel.secondary);
    }

    void _convert(double to, double from) { _multiply(static_cast<long double>(to) / static_cast<long double>(from)); }

    void _multiply(long double factor) {
        _channel.a *= factor;
        _channel.b *= factor;
    }

    void _tell(std::uint64_t offset, const char* name, const Told& told, const std::string& found) {
        Finding finding;
        finding.severity = told.severity;
        finding.code = told.code;
        finding.file = _text.file;
        finding.field = name;
        finding.found = shown(found);
        finding.expected = told.expected;
        finding.done = told.done;
        finding.mended = told.isMended;
        if (_line < _text.lines.size()) {
            finding.line = _text.lines[_line].number;
            finding.offset = offset;
        }
        _findings.add(std::move(finding));
    }

    AnalogLine& _channel;
    bool _hasRatio;
    std::size_t _line; ///< index in the text
    const CfgText& _text;
    Findings& _findings;
};

} // namespace

void settleScaling(Configuration& configuration, Side side, const CfgText& text, Findings& findings) {
    const bool hasRatio = configuration.revision >= 1999; // the library ignores it in older files
    for (std::size_t index = 0; index < configuration.analog.size(); ++index) {
        ChannelScaling scaling(configuration.analog[index], hasRatio, configuration.channelLine + index, text,
                               findings);
        scaling.settleUnit();
        scaling.settleSide(side);
    }
}

void divideFactors(Configuration& configuration, const std::vector<int>& exponents) {
    const std::size_t count = std::min(exponents.size(), configuration.analog.size());
    for (std::size_t index = 0; index < count; ++index) {
        configuration.analog[index].a /= std::pow(10.0L, static_cast<long double>(exponents[index]));
    }
}

} // namespace OrvComtradeIntake
