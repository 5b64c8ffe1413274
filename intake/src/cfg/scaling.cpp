#include "cfg/scaling.h"

#include "base/numbers.h"
#include "cfg/units.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr int kFirstRevisionWithSides = 1999;

bool isUsable(double factor) {
    return std::isfinite(factor) && factor != 0.0;
}

bool hasUsableRatio(const AnalogInfo& channel) {
    return isUsable(channel.primary) && isUsable(channel.secondary);
}

Side declaredSide(const AnalogInfo& channel, int revision) {
    return revision < kFirstRevisionWithSides ? Side::Recorded : channel.side;
}

std::string ratioText(const AnalogInfo& channel) {
    return numberText(channel.primary) + " to " + numberText(channel.secondary);
}

void checkRatio(const AnalogInfo& channel, const Place& place, Findings& findings) {
    if (!hasUsableRatio(channel)) {
        findings.add(Kind::Ratio, place, {ratioText(channel)});
    } else if (std::abs(channel.primary) < std::abs(channel.secondary)) {
        // Hardly a transformer that makes more of less: its sides are rather given in different units.
        findings.add(Kind::Ratio, place,
                     {ratioText(channel), "used for the conversion",
                      "a primary factor above the secondary one, in the same unit"});
    }
}

long double conversion(const AnalogInfo& channel, Side from, Side to) {
    if (from == to) {
        return 1.0L;
    }
    const auto primary = static_cast<long double>(channel.primary);
    const auto secondary = static_cast<long double>(channel.secondary);
    return to == Side::Primary ? primary / secondary : secondary / primary;
}

// The double that the library reads where the number is written.
double asRead(long double number) {
    return readNumber(numberText(number)).value;
}

} // namespace

Side givenSide(const AnalogInfo& channel, int revision, Side wanted) {
    const Side declared = declaredSide(channel, revision);
    const bool isGiven = wanted == Side::Recorded || declared == Side::Recorded || !hasUsableRatio(channel);
    return isGiven ? declared : wanted;
}

void checkScaling(const ReadCfg& cfg, Side wanted, Findings& findings) {
    if (wanted == Side::Recorded) {
        return;
    }
    const bool areLinesReported = findings.has(Kind::Side);
    for (std::size_t index = 0; index < cfg.header.analog.size(); ++index) {
        const AnalogInfo& channel = cfg.header.analog[index];
        const Side declared = declaredSide(channel, cfg.header.revision);
        if (declared == Side::Recorded && !areLinesReported) {
            findings.add(Kind::Side, {cfg.file, cfg.analog[index].line, "PS", cfg.analog[index].sideOffset},
                         {"no side"});
        } else if (declared != Side::Recorded && declared != wanted) {
            checkRatio(channel, {cfg.file, cfg.analog[index].line, "primary", cfg.analog[index].ratioOffset}, findings);
        }
    }
}

AnalogInfo channelForLibrary(const AnalogInfo& channel, const AnalogSource& source, int revision, Side wanted,
                             int exponent) {
    AnalogInfo made = channel;
    made.side = givenSide(channel, revision, wanted);
    if (made.side != Side::Secondary) { // a ratio without its side is of no use
        made.primary = 1.0;
        made.secondary = 1.0;
    }
    BaseUnit base = baseUnit(channel.unit);
    made.unit = isScaledByLibrary(base.name) ? '[' + base.name + ']' : std::move(base.name);
    const long double factor = conversion(channel, declaredSide(channel, revision), made.side);
    made.a = asRead(source.a * base.factor * factor / std::pow(10.0L, static_cast<long double>(exponent)));
    made.b = asRead(source.b * base.factor * factor);
    return made;
}

} // namespace OrvComtradeIntake
