#include "fleet/CatalogueWriter.h"

#include "fleet/schema.h"
#include "input/RecordingRow.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <utility>

namespace {

constexpr std::string_view kChannelsBegin = R"(,"analog":[)";
constexpr int kHexadecimal = 16;

/// One writer, and nothing to roll back to: the file gets its name when it is whole.
void begin(Database& database) {
    database.run("PRAGMA page_size=8192; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; "
                 "PRAGMA locking_mode=EXCLUSIVE; PRAGMA cache_size=-65536; PRAGMA temp_store=FILE;");
    database.run(
        fmt::format("PRAGMA application_id={}; PRAGMA user_version={}; BEGIN;", kCatalogueId, kCatalogueVersion));
    database.run(kCatalogueTables);
}

Database emptyCatalogue(const std::string& path, const std::string& shown) {
    Database database(path, Database::Mode::Write, shown);
    begin(database);
    return database;
}

/// "INSERT INTO table VALUES (?, ?)"
std::string insertion(const char* table, int columns) {
    std::string marks = "?";
    for (int i = 1; i < columns; ++i) {
        marks += ",?";
    }
    return fmt::format("INSERT INTO {} VALUES ({})", table, marks);
}

std::optional<std::string> text(const Json& object, const char* member) {
    const auto value = object.find(member);
    return value == object.end() || value->is_null() ? std::nullopt : std::optional(value->get<std::string>());
}

/// Puts in nothing where there is none.
template <class Number> void addNumber(Statement& statement, const Json& object, const char* member) {
    const auto value = object.find(member);
    if (value == object.end() || value->is_null()) {
        statement.addNull();
    } else {
        statement.add(value->get<Number>());
    }
}

void addTexts(Statement& statement, const Json& object, std::initializer_list<const char*> members) {
    for (const char* const member : members) {
        statement.add(text(object, member));
    }
}

std::optional<std::int64_t> layoutOf(const Json& line) {
    const std::optional<std::string> digits = text(line, "layout");
    if (!digits) {
        return std::nullopt;
    }
    std::uint64_t layout = 0;
    std::from_chars(digits->data(), digits->data() + digits->size(), layout, kHexadecimal);
    return static_cast<std::int64_t>(layout);
}

/// None where the times are in the data.
std::vector<double> ratesOf(const Json& line) {
    std::vector<double> rates;
    if (line.value("samplingRateKnown", false)) {
        for (const Json& entry : line.at("samplingRates")) {
            addRate(entry.at("rate").get<double>(), rates);
        }
    }
    return rates;
}

std::int64_t bytesOf(const Json& files) {
    std::int64_t bytes = 0;
    for (const Json& file : files) {
        bytes += file.at("bytes").get<std::int64_t>();
    }
    return bytes;
}

/// Of the file that changed last; times of equal length compare as texts.
std::optional<std::string> modifiedOf(const Json& files) {
    std::optional<std::string> latest;
    for (const Json& file : files) {
        latest = std::max(latest, text(file, "modified"));
    }
    return latest;
}

/// The line without its channels, which are its last members and most of it.
Json withoutChannels(std::string_view line) {
    const std::size_t channels = line.find(kChannelsBegin); // in a string its quotes would have backslashes
    return channels == std::string_view::npos ? Json::parse(line)
                                              : Json::parse(std::string(line.substr(0, channels)) + "}");
}

/// In the order of the columns; nanoseconds are made of the texts, of which SQLite's own dates have milliseconds.
constexpr const char* kRecording =
    "INSERT INTO recording VALUES (?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,"
    "CAST(strftime('%s',substr(?12,1,19)) AS INTEGER)*1000000000+CAST(substr(?12,21) AS INTEGER),"
    "CAST(strftime('%s',substr(?13,1,19)) AS INTEGER)*1000000000+CAST(substr(?13,21) AS INTEGER),"
    "?14,?15,?16,?17,?18,?19,?20,?21,?22,?23,?24,?25,?26,?27,?28,?29,?30)";

constexpr int kArchiveColumns = 3;
constexpr int kLayoutColumns = 3;
constexpr int kChannelColumns = 13;
constexpr int kEventColumns = 5;
constexpr int kFindingColumns = 4;

} // namespace

CatalogueWriter::CatalogueWriter(const std::string& path, const std::string& shown)
    : _database(emptyCatalogue(path, shown)), _archive(_database, insertion("archive", kArchiveColumns)),
      _recording(_database, kRecording), _knownLayout(_database, "SELECT 1 FROM layout WHERE layout=?"),
      _layout(_database, insertion("layout", kLayoutColumns)),
      _channel(_database, insertion("channel", kChannelColumns)), _event(_database, insertion("event", kEventColumns)),
      _finding(_database, insertion("finding", kFindingColumns)) {}

std::int64_t CatalogueWriter::addArchive(const Json& header) {
    _archive.add(++_counts.archives);
    addTexts(_archive, header, {"root", "rootBytes"});
    _archive.run();
    _roots.insert(header.at("root").get<std::string>());
    return _counts.archives;
}

void CatalogueWriter::addRecording(std::int64_t archive, std::string_view line) {
    const Json object = withoutChannels(line);
    const std::optional<std::int64_t> layout = layoutOf(object);
    ++_counts.recordings;
    _addRow(archive, object, layout);
    if (layout && _isNewLayout(*layout)) {
        _addLayout(*layout, Json::parse(line));
    }
    _addEvents(object);
    _addFindings(object);
}

bool CatalogueWriter::_isNewLayout(std::int64_t layout) {
    _knownLayout.add(layout);
    const bool isKnown = _knownLayout.step();
    _knownLayout.begin();
    return !isKnown;
}

void CatalogueWriter::_addRow(std::int64_t archive, const Json& line, const std::optional<std::int64_t>& layout) {
    const Json& files = line.at("files");
    const bool isReadable = line.at("ok").get<bool>();
    _counts.unreadable += isReadable ? 0 : 1;
    _recording.add(_counts.recordings).add(archive);
    addTexts(_recording, line, {"path", "pathBytes"});
    _recording.add(std::int64_t{isReadable});
    addTexts(_recording, line, {"verdict", "error", "station", "recorder"});
    addNumber<std::int64_t>(_recording, line, "revision");
    addTexts(_recording, line, {"dataType", "start", "trigger", "timeCode", "localCode", "timeQuality", "leapSecond"});
    addNumber<double>(_recording, line, "lineFrequency");
    _addRates(ratesOf(line));
    addNumber<std::int64_t>(_recording, line, "samples");
    addNumber<std::int64_t>(_recording, line, "samplesDeclared");
    addNumber<double>(_recording, line, "duration");
    _recording.add(text(line, "encoding")).add(layout);
    addNumber<std::int64_t>(_recording, line, "eventCount");
    _recording.add(bytesOf(files)).add(modifiedOf(files));
    addTexts(_recording, line, {"digest", "tool"});
    _recording.run();
}

/// The highest one, and all as a text.
void CatalogueWriter::_addRates(const std::vector<double>& rates) {
    if (rates.empty()) {
        _recording.addNull().addNull();
    } else {
        _recording.add(*std::max_element(rates.begin(), rates.end())).add(fmt::format("{}", fmt::join(rates, " ")));
    }
}

void CatalogueWriter::_addLayout(std::int64_t layout, const Json& line) {
    const Json& analog = line.at("analog");
    const Json& status = line.at("status");
    _layout.add(layout).add(static_cast<std::int64_t>(analog.size())).add(static_cast<std::int64_t>(status.size()));
    _layout.run();
    for (const auto& [kind, channels] : {std::pair("analog", &analog), std::pair("status", &status)}) {
        for (const Json& channel : *channels) {
            _channel.add(layout).add(std::string(kind));
            addNumber<std::int64_t>(_channel, channel, "number");
            addTexts(_channel, channel, {"name", "id", "phase", "component", "unit", "side"});
            for (const char* const member : {"primary", "secondary", "skew"}) {
                addNumber<double>(_channel, channel, member);
            }
            addNumber<std::int64_t>(_channel, channel, "normal");
            _channel.run();
        }
    }
}

void CatalogueWriter::_addEvents(const Json& line) {
    const auto events = line.find("events");
    if (events == line.end()) {
        return;
    }
    for (const Json& event : *events) {
        _event.add(_counts.recordings);
        addNumber<std::int64_t>(_event, event, "number");
        addNumber<double>(_event, event, "time");
        _event.add(text(event, "clock"));
        addNumber<std::int64_t>(_event, event, "to");
        _event.run();
        ++_counts.events;
    }
}

void CatalogueWriter::_addFindings(const Json& line) {
    const auto findings = line.find("findings");
    if (findings == line.end()) {
        return;
    }
    for (const Json& finding : *findings) {
        _finding.add(_counts.recordings);
        addTexts(_finding, finding, {"code", "severity"});
        addNumber<std::int64_t>(_finding, finding, "places");
        _finding.run();
    }
}

CatalogueCounts CatalogueWriter::finish() {
    _database.run(kCatalogueIndexes);
    _database.run("COMMIT; ANALYZE;");
    return _counts;
}
