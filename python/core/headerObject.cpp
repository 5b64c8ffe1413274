#include "headerObject.h"

#include "text.h"

#include <cstddef>
#include <nanobind/stl/string.h>
#include <optional>

namespace nb = nanobind;
using namespace OrvComtradeIntake;

namespace {

nb::object instantObject(const std::optional<Instant>& instant) {
    return instant ? nb::object(nb::int_(instant->nanoseconds)) : nb::none();
}

nb::dict analogObject(const Opened& opened, std::size_t index) {
    const AnalogInfo& channel = opened.header().analog[index];
    nb::dict object;
    object["number"] = channel.number;
    object["id"] = textObject(channel.id);
    object["phase"] = textObject(channel.phase);
    object["component"] = textObject(channel.component);
    object["recorded_unit"] = textObject(channel.unit);
    object["a"] = channel.a;
    object["b"] = channel.b;
    object["skew"] = channel.skew * 1e-6;
    object["min"] = channel.min;
    object["max"] = channel.max;
    object["primary"] = channel.primary;
    object["secondary"] = channel.secondary;
    object["recorded_side"] = sideWord(channel.side, "recorded");
    object["unit"] = textObject(opened.unitOf(index));
    object["side"] = sideWord(opened.sideOf(index), "recorded");
    return object;
}

nb::dict statusObject(const StatusInfo& channel) {
    nb::dict object;
    object["number"] = channel.number;
    object["id"] = textObject(channel.id);
    object["phase"] = textObject(channel.phase);
    object["component"] = textObject(channel.component);
    object["normal"] = nb::bool_(channel.normalState != 0);
    return object;
}

} // namespace

nb::dict headerObject(const Opened& opened) {
    const Header& header = opened.header();
    nb::list analog;
    for (std::size_t i = 0; i < header.analog.size(); ++i) {
        analog.append(analogObject(opened, i));
    }
    nb::list status;
    for (const StatusInfo& channel : header.status) {
        status.append(statusObject(channel));
    }
    nb::list rates;
    for (const RateInfo& rate : header.rates) {
        rates.append(nb::make_tuple(rate.rate, rate.endSample));
    }
    nb::dict object;
    object["station"] = textObject(header.station);
    object["recorder"] = textObject(header.recorder);
    object["revision"] = header.revision;
    object["analog"] = analog;
    object["status"] = status;
    object["line_frequency"] = header.lineFrequency;
    object["rates"] = rates;
    object["start"] = instantObject(header.start);
    object["trigger"] = instantObject(header.trigger);
    object["data_type"] = typeWord(header.dataType);
    object["time_multiplier"] = header.timeMultiplier;
    object["time_code"] = textObject(header.timeCode);
    object["local_code"] = textObject(header.localCode);
    object["time_quality"] = textObject(header.timeQuality);
    object["leap_second"] = textObject(header.leapSecond);
    object["has_nanosecond_dates"] = header.hasNanosecondDates;
    object["encoding"] = textObject(header.encoding);
    object["hdr"] = textObject(header.hdr);
    object["inf"] = textObject(header.inf);
    object["samples_declared"] = header.samplesDeclared;
    object["samples"] = header.samples;
    return object;
}

nb::list findingsObject(const Opened& opened) {
    const std::vector<Finding>* findings = nullptr;
    {
        const nb::gil_scoped_release others; // the first call reads the data
        findings = &opened.findings();
    }
    nb::list list;
    for (const Finding& finding : *findings) {
        const Place& place = finding.place;
        list.append(nb::make_tuple(finding.code, severityWord(finding.severity),
                                   finding.rule == Rule::Standard ? "standard" : "damage", finding.clause,
                                   pathObject(place.file), place.line, textObject(place.field), place.offset,
                                   finding.places, textObject(finding.found), textObject(finding.expected),
                                   textObject(finding.repair), textObject(finding.advice)));
    }
    return list;
}
