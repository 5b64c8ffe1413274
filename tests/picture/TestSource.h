#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>
#include <OrvComtradePicture/Source.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace orvtest {

/// A recording as a picture sees it, made of columns.
class TestSource {
public:
    TestSource() {
        header.rates.push_back({1000.0, 0});
        header.lineFrequency = 50.0;
    }

    /// A channel with its values, in base units.
    TestSource& analog(const std::string& id, const std::string& unit, std::vector<double> values,
                       const std::string& phase = "", const std::string& component = "") {
        OrvComtradeIntake::AnalogInfo info;
        info.id = id;
        info.phase = phase;
        info.component = component;
        info.unit = unit;
        header.analog.push_back(info);
        units.push_back(unit);
        samples = std::max(samples, values.size());
        analogs.push_back(std::move(values));
        return *this;
    }

    /// A channel that is 1 at these samples.
    TestSource& status(const std::string& id, std::vector<std::size_t> on, const std::string& component = "") {
        OrvComtradeIntake::StatusInfo info;
        info.id = id;
        info.component = component;
        header.status.push_back(info);
        statuses.push_back(std::move(on));
        return *this;
    }

    TestSource& trigger(double seconds) {
        header.start = OrvComtradeIntake::Instant{1600000000000000000}; // 2020-09-13T12:26:40
        header.trigger =
            OrvComtradeIntake::Instant{header.start->nanoseconds + static_cast<std::int64_t>(seconds * 1e9)};
        return *this;
    }

    /// A millisecond from sample to sample, unless `times` says otherwise. The object must outlive it.
    OrvComtradePicture::Source source() const {
        OrvComtradePicture::Source source{header, {}, {}};
        for (const std::string& unit : units) {
            source.analog.push_back({unit, OrvComtradeIntake::Side::Recorded});
        }
        source.columns = [this](const OrvComtradeIntake::Selection& selection, std::size_t most,
                                const OrvComtradePicture::OnBlock& onBlock) { _columns(selection, most, onBlock); };
        return source;
    }

    OrvComtradeIntake::Header header;
    std::vector<std::string> units;
    std::vector<double> times;
    std::vector<std::vector<double>> analogs;
    std::vector<std::vector<std::size_t>> statuses;
    std::size_t samples = 0;
    std::size_t block = 7; ///< samples at once, at most

private:
    bool _isOn(std::size_t channel, std::size_t sample) const {
        const auto& on = statuses[channel];
        return std::find(on.begin(), on.end(), sample) != on.end();
    }

    void _columns(const OrvComtradeIntake::Selection& selection, std::size_t most,
                  const OrvComtradePicture::OnBlock& onBlock) const {
        const std::size_t end =
            std::min<std::uint64_t>(samples, selection.first + std::min<std::uint64_t>(selection.count, samples));
        for (std::size_t first = selection.first; first < end;) {
            OrvComtradeIntake::Columns columns;
            columns.first = first;
            columns.samples = std::min({most, block, end - first});
            for (std::size_t i = first; i < first + columns.samples; ++i) {
                columns.time.push_back(times.empty() ? static_cast<double>(i) / 1000.0 : times[i]);
            }
            _addAnalog(selection, columns);
            _addStates(selection, columns);
            first += columns.samples;
            if (!onBlock(columns)) {
                return;
            }
        }
    }

    void _addAnalog(const OrvComtradeIntake::Selection& selection, OrvComtradeIntake::Columns& columns) const {
        const std::size_t count = selection.allAnalog ? analogs.size() : selection.analog.size();
        for (std::size_t i = 0; i < count; ++i) {
            const std::vector<double>& values = analogs.at(selection.allAnalog ? i : selection.analog[i]);
            for (std::size_t j = columns.first; j < columns.first + columns.samples; ++j) {
                columns.analog.push_back(values.at(j));
            }
        }
    }

    void _addStates(const OrvComtradeIntake::Selection& selection, OrvComtradeIntake::Columns& columns) const {
        const std::size_t count = selection.allStatus ? statuses.size() : selection.status.size();
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t channel = selection.allStatus ? i : selection.status[i];
            std::vector<OrvComtradeIntake::StateChange> changes;
            for (std::size_t j = columns.first; j < columns.first + columns.samples; ++j) {
                if (changes.empty() || changes.back().state != _isOn(channel, j)) {
                    changes.push_back({j, _isOn(channel, j)});
                }
            }
            columns.states.push_back(std::move(changes));
        }
    }
};

/// A wave of 50 Hz, of this amplitude up to a sample and of that one behind it.
inline std::vector<double> wave(std::size_t samples, double before, std::size_t change, double after) {
    std::vector<double> values;
    double sine = 0.0;
    double cosine = 1.0;
    for (std::size_t i = 0; i < samples; ++i) {
        values.push_back((i < change ? before : after) * sine);
        const double next = sine * 0.95105651629515353 + cosine * 0.30901699437494745; // of 18 degrees
        cosine = cosine * 0.95105651629515353 - sine * 0.30901699437494745;
        sine = next;
    }
    return values;
}

} // namespace orvtest
