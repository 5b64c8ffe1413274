#include "PackedColumns.h"
#include "Packer.h"
#include "RecordedColumns.h"
#include "TimeModel.h"
#include "html.h"
#include "pageAssets.h"
#include "summary.h"

#include <OrvComtradePage/Page.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace OrvComtradePage {

using Json = nlohmann::ordered_json;
using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Scale;
using OrvComtradeIntake::Side;
using OrvComtradeIntake::StateChange;
using OrvComtradeIntake::StatusInfo;

namespace {

constexpr std::size_t kChangesInline = 64; // more of them are packed

constexpr std::string_view kHead =
    "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src 'unsafe-inline'; "
    "style-src 'unsafe-inline'\">\n"
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
    "<meta name=\"color-scheme\" content=\"light dark\">\n";

Json instantJson(const std::optional<Instant>& instant) {
    return instant ? Json(instant->text()) : Json();
}

Json findingJson(const Finding& finding) {
    return {{"code", finding.code},
            {"severity", severityWord(finding.severity)},
            {"clause", finding.clause},
            {"file", finding.place.file.substr(finding.place.file.rfind('/') + 1)}, // not the folders of its maker
            {"line", finding.place.line},
            {"field", finding.place.field},
            {"offset", finding.place.offset},
            {"places", finding.places},
            {"found", finding.found},
            {"expected", finding.expected},
            {"repair", finding.repair},
            {"advice", finding.advice}};
}

Json headerJson(const Header& header) {
    Json rates = Json::array();
    for (const OrvComtradeIntake::RateInfo& rate : header.rates) {
        rates.push_back({rate.rate, rate.endSample});
    }
    return {{"station", header.station},
            {"recorder", header.recorder},
            {"revision", header.revision},
            {"dataType", typeWord(header.dataType)},
            {"frequency", header.lineFrequency},
            {"rates", std::move(rates)},
            {"areTimesStamped", header.timesAreStamped()},
            {"start", instantJson(header.start)},
            {"trigger", instantJson(header.trigger)},
            {"timeMultiplier", header.timeMultiplier},
            {"timeCode", header.timeCode},
            {"localCode", header.localCode},
            {"timeQuality", header.timeQuality},
            {"leapSecond", header.leapSecond},
            {"encoding", header.encoding},
            {"samplesDeclared", header.samplesDeclared},
            {"samples", header.samples},
            {"hdr", header.hdr},
            {"inf", header.inf}};
}

/// Writes a page: what is small into one JSON value, the numbers as blocks of base64 behind it.
class PageWriter {
public:
    PageWriter(const Opened& opened, const PageOptions& options, const OrvComtradeIntake::Sink& sink)
        : _opened(opened), _options(options), _sink(sink) {
        if (opened.readable()) {
            _columns = readColumns(opened, options.fullBytes);
        }
    }

    PageSummary write() {
        _writeHead();
        Json model = _modelJson(); // writes the blocks
        _put("<script type=\"application/json\" id=\"recording\">");
        _put(scriptJson(model));
        _put("</script>\n<script>\n\"use strict\";\n(() => {\n");
        _put(kPageScript);
        _put("})();\n</script>\n</body>\n</html>\n");
        PageSummary summary = summaryOf(_opened, _columns);
        summary.bytes = _bytes;
        return summary;
    }

private:
    void _put(std::string_view text) {
        _bytes += text.size();
        _sink(text);
    }

    void _writeHead() {
        const std::string& station = _opened.header().station;
        _put(kHead);
        _put("<title>" + htmlText(station.empty() ? _options.name : station + " - " + _options.name) +
             "</title>\n<style>\n");
        _put(kPageStyle);
        _put("</style>\n</head>\n<body>\n");
        _put(kPageBody);
    }

    /// Writes the numbers, and gives what the JSON says of them.
    Json _block(const Packed& packed) {
        _put("<script type=\"text/plain\" id=\"block" + std::to_string(_blocks) + "\">");
        _put(packed.base64);
        _put("</script>\n");
        return {{"block", _blocks++},
                {"type", packed.type},
                {"count", packed.count},
                {"inflatedBytes", packed.inflatedBytes}};
    }

    Json _modelJson() {
        Json findings = Json::array();
        for (const Finding& finding : _opened.findings()) {
            findings.push_back(findingJson(finding));
        }
        Json model = {{"form", 2},
                      {"name", _options.name},
                      {"program", _options.program},
                      {"verdict", _options.verdict},
                      {"index", _options.indexLink},
                      {"side", sideWord(_options.side)},
                      {"header", headerJson(_opened.header())},
                      {"findings", std::move(findings)},
                      {"pieces", Json::array()}};
        for (const Piece& piece : _columns.pieces) {
            model["pieces"].push_back({piece.first, piece.count, piece.step});
        }
        model["time"] = _timeJson();
        model["analog"] = Json::array();
        PackedColumns packed(_columns.analog, _options.threads);
        for (std::size_t channel = 0; channel < _columns.analog.size(); ++channel) {
            model["analog"].push_back(_analogJson(channel, packed.next()));
        }
        model["status"] = Json::array();
        for (std::size_t channel = 0; channel < _columns.states.size(); ++channel) {
            model["status"].push_back(_statusJson(channel));
        }
        return model;
    }

    Json _timeJson() {
        const TimeModel time = timeModelOf(_opened.header(), _columns);
        if (time.kind == TimeModel::Kind::Rates) {
            Json segments = Json::array();
            for (const TimeModel::Segment& segment : time.segments) {
                segments.push_back({segment.rate, segment.count});
            }
            return {{"kind", "rates"}, {"segments", std::move(segments)}};
        }
        const bool isStamped = time.kind == TimeModel::Kind::Stamps;
        Json json = {{"kind", isStamped ? "stamps" : "times"}, {"numbers", _block(_packer.pack(time.numbers))}};
        if (isStamped) {
            json["multiplier"] = time.multiplier;
        }
        return json;
    }

    Json _scaleJson(std::size_t channel, Side side) const {
        const Scale scale = _opened.scaleOf(channel, side);
        return {{"side", sideWord(scale.side)}, {"a", scale.a}, {"b", scale.b}};
    }

    Json _analogJson(std::size_t channel, const Packed& values) {
        const AnalogInfo& info = _opened.header().analog[channel];
        Json missing = Json::array();
        for (const MissingRun& run : _columns.missing[channel]) {
            missing.push_back({run.sample, run.count});
        }
        return {{"number", info.number},
                {"id", info.id},
                {"phase", info.phase},
                {"component", info.component},
                {"unit", info.unit},
                {"base", _opened.unitOf(channel)},
                {"a", info.a},
                {"b", info.b},
                {"skew", info.skew},
                {"min", info.min},
                {"max", info.max},
                {"primary", info.primary},
                {"secondary", info.secondary},
                {"recorded", _scaleJson(channel, Side::Recorded)},
                {"onPrimary", _scaleJson(channel, Side::Primary)},
                {"onSecondary", _scaleJson(channel, Side::Secondary)},
                {"missing", std::move(missing)},
                {"values", _block(values)}};
    }

    Json _statusJson(std::size_t channel) {
        const StatusInfo& info = _opened.header().status[channel];
        const std::vector<StateChange>& states = _columns.states[channel];
        Json json = {{"number", info.number},      {"id", info.id},
                     {"phase", info.phase},        {"component", info.component},
                     {"normal", info.normalState}, {"first", !states.empty() && states.front().state ? 1 : 0}};
        std::vector<double> changes;
        for (std::size_t i = 1; i < states.size(); ++i) {
            changes.push_back(static_cast<double>(states[i].sample));
        }
        if (changes.size() <= kChangesInline) {
            json["changes"] = Json::array();
            for (const double change : changes) {
                json["changes"].push_back(static_cast<std::uint64_t>(change));
            }
        } else {
            ValueColumn column;
            column.append(changes.data(), changes.size());
            json["changes"] = _block(_packer.pack(column));
        }
        return json;
    }

    const Opened& _opened;
    const PageOptions& _options;
    const OrvComtradeIntake::Sink& _sink;
    RecordedColumns _columns;
    Packer _packer;
    std::size_t _blocks = 0;
    std::uint64_t _bytes = 0;
};

} // namespace

PageSummary writePage(const Opened& opened, const PageOptions& options, const OrvComtradeIntake::Sink& sink) {
    return PageWriter(opened, options, sink).write();
}

} // namespace OrvComtradePage
