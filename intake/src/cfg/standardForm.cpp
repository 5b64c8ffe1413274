#include "cfg/standardForm.h"

#include "cfg/settleRates.h"
#include "cfg/writeConfiguration.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

namespace {

void endAtLastSample(Header& header) {
    if (header.samples == 0) {
        return;
    }
    header.rates = header.timesAreStamped() ? std::vector<RateInfo>{{0.0, header.samples}}
                                            : ratesFrom(header.rates, 0, header.samples);
}

// With its ratio a side that is only assumed would give other values on the other side.
void assumeSides(Header& header) {
    for (AnalogInfo& channel : header.analog) {
        if (channel.side == Side::Recorded) {
            channel.side = Side::Secondary;
            channel.primary = 1.0;
            channel.secondary = 1.0;
        }
    }
}

// The one whose layout lines of that year have.
int revisionOf(int year) {
    return year < 1999 ? 1991 : year < 2013 ? 1999 : 2013;
}

void cutToMicroseconds(std::optional<Instant>& instant) {
    if (instant) {
        const std::int64_t rest = instant->nanoseconds % 1000;
        instant->nanoseconds -= rest < 0 ? rest + 1000 : rest;
    }
}

void dropSince2013(Header& header) {
    header.timeCode.clear();
    header.localCode.clear();
    header.timeQuality.clear();
    header.leapSecond.clear();
    header.hasNanosecondDates = false;
    cutToMicroseconds(header.start);
    cutToMicroseconds(header.trigger);
}

bool hasPartOfMicrosecond(const std::optional<Instant>& instant) {
    return instant && instant->nanoseconds % 1000 != 0;
}

bool hasRatio(const AnalogInfo& channel) {
    return channel.side != Side::Recorded && channel.primary != channel.secondary;
}

bool isNamedFurther(const StatusInfo& channel) {
    return !channel.phase.empty() || !channel.component.empty();
}

void dropSince1999(Header& header) {
    for (AnalogInfo& channel : header.analog) {
        channel.primary = 1.0;
        channel.secondary = 1.0;
        channel.side = Side::Recorded;
    }
    for (StatusInfo& channel : header.status) {
        channel.phase.clear();
        channel.component.clear();
    }
}

} // namespace

bool countsNanoseconds(const Header& header) {
    return header.hasNanosecondDates && header.revision >= 2013;
}

std::string standardForm(const Header& header) {
    Header written = header;
    written.revision = revisionOf(header.revision);
    assumeSides(written);
    endAtLastSample(written);
    return writeConfiguration(written, Reader::Standard);
}

Losses lostTo(const Header& header, int revision) {
    Losses losses;
    if (revision < 2013 && header.revision >= 2013) {
        losses.timeCodes = !header.timeCode.empty() || !header.localCode.empty() || !header.timeQuality.empty() ||
                           !header.leapSecond.empty();
    }
    losses.nanoseconds = revision < 2013 && revision != header.revision &&
                         (hasPartOfMicrosecond(header.start) || hasPartOfMicrosecond(header.trigger));
    if (revision < 1999 && header.revision >= 1999) {
        losses.ratios = std::any_of(header.analog.begin(), header.analog.end(), hasRatio);
        losses.statusNames = std::any_of(header.status.begin(), header.status.end(), isNamedFurther);
    }
    return losses;
}

Header withRevision(Header header, int revision) {
    const bool countedNanoseconds = countsNanoseconds(header);
    header.revision = revision;
    if (revision < 2013) {
        dropSince2013(header);
    }
    if (revision < 1999) {
        dropSince1999(header);
    }
    if (header.timesAreStamped() && countedNanoseconds && !countsNanoseconds(header)) {
        header.timeMultiplier /= 1000.0;
    } else if (header.timesAreStamped() && !countedNanoseconds && countsNanoseconds(header)) {
        header.timeMultiplier *= 1000.0;
    }
    return header;
}

} // namespace OrvComtradeIntake
