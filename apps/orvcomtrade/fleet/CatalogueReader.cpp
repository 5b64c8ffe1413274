#include "fleet/CatalogueReader.h"

#include "StringHelper.h"
#include "fleet/catalogueVersion.h"
#include "fleet/shardLines.h"
#include "input/clockTimeIn.h"
#include "input/recordingName.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <ios>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <utility>
#include <vector>

using OrvComtradeIntake::Instant;

namespace {

/// Of the query below, in its order.
enum class Result {
    Root,
    RootBytes,
    Path,
    PathBytes,
    Readable,
    Verdict,
    Error,
    Station,
    Recorder,
    Start,
    Trigger,
    Duration,
    Samples,
    Rates,
    Analog,
    Status,
    Revision,
    DataType,
    Layout
};

constexpr const char* kRows =
    "SELECT root, root_bytes, path, path_bytes, readable, verdict, error, station, recorder, start, \"trigger\", "
    "duration, samples, rates, analog_channels, status_channels, revision, data_type, recording.layout "
    "FROM archive JOIN recording INDEXED BY recording_path ON recording.archive = archive.archive "
    "LEFT JOIN layout ON layout.layout = recording.layout ";
constexpr const char* kOrder = "ORDER BY recording.archive, path, path_bytes"; // of the index: nothing is sorted

/// The instants are looked up in their own index; what is found there is met in the order of the paths.
std::string queryFor(const RecordingFilter& filter) {
    std::string wishes;
    if (filter.after) {
        wishes += fmt::format(" AND start >= '{}'", filter.after->text());
    }
    if (filter.before) {
        wishes += fmt::format(" AND start < '{}'", filter.before->text());
    }
    const std::string times =
        wishes.empty()
            ? ""
            : "WHERE recording.recording IN (SELECT recording FROM recording WHERE start IS NOT NULL" + wishes + ") ";
    return kRows + times + kOrder;
}

std::string knownCatalogue(const std::string& path) {
    requireKnownCatalogue(path);
    return path;
}

std::string textIn(const Statement& rows, Result column) {
    return rows.text(static_cast<int>(column)).value_or("");
}

/// The bytes of a path, which stand percent-encoded beside it where it is no UTF-8.
std::string pathIn(const Statement& rows, Result path, Result bytes) {
    const std::optional<std::string> encoded = rows.text(static_cast<int>(bytes));
    return encoded ? percentDecoded(*encoded) : textIn(rows, path);
}

std::optional<Instant> instantIn(const Statement& rows, Result column) {
    const std::optional<std::string> text = rows.text(static_cast<int>(column));
    return text ? clockTimeIn(*text) : std::nullopt;
}

template <class Number> Number numberIn(std::string_view text) {
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

template <class Number> Number numberIn(const Statement& rows, Result column) {
    return numberIn<Number>(textIn(rows, column));
}

std::vector<double> ratesIn(const Statement& rows) {
    const std::string text = textIn(rows, Result::Rates);
    std::vector<double> rates;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        rates.push_back(numberIn<double>(std::string_view(text).substr(begin, end - begin)));
        begin = end + 1;
    }
    return rates;
}

/// The sentence on a recording, which names it as seen from the archive.
std::string placed(const std::string& sentence, const std::string& root, const std::string& path) {
    const std::string name = printable(std::string(stemOf(path)));
    return sentence.compare(0, name.size(), name) == 0 ? printable(joined(root, "")) + sentence : sentence;
}

bool isThere(const std::string& path, struct stat& status) {
    return stat(path.c_str(), &status) == 0;
}

/// Throws a Failure unless the folder is there.
void requireRoot(const std::string& catalogue, const std::string& root) {
    struct stat status = {};
    const bool isFolder = isThere(root, status) && S_ISDIR(status.st_mode);
    if (!isFolder) {
        throw Failure(
            kRecordingProblem,
            fmt::format("{}: no folder {}, in which its recordings should be; --root FOLDER names the right one",
                        printable(catalogue), printable(root)));
    }
}

/// What is written of a recording stays below the folder that its user names, whatever a catalogue says.
bool leadsOut(const std::string& target) {
    return target.empty() || target.front() == '/' || ("/" + target + "/").find("/../") != std::string::npos;
}

/// `target` leads the target of the recording.
Entry entryOf(const CatalogueReader& reader, const std::string& target) {
    const RecordingRow& row = reader.row();
    Entry entry{row.path, joined(target, std::string(stemOf(reader.pathBelowRoot())))};
    entry.isChosen = true;
    struct stat status = {};
    if (row.verdict.empty()) {
        entry.problem = row.problem;
    } else if (const auto place = placeInArchive(row.path); place && isThere(place->archive, status)) {
        entry.target = joined(target, std::string(stemOf(place->archive.substr(joined(reader.root(), "").size()))));
        entry.archive = place->archive;
        entry.inner = place->inner;
    } else if (!isThere(row.path, status)) {
        entry.problem =
            fmt::format("{}: {}; it was there when the catalogue was made", printable(row.path), std::strerror(errno));
    }
    if (entry.problem.empty() && leadsOut(entry.target)) {
        entry.problem = printable(row.path) + ": not read: its path in the catalogue leads out of the archive";
    }
    return entry;
}

} // namespace

bool isCatalogue(const std::string& path) {
    constexpr std::string_view begin = "SQLite format 3";
    struct stat status = {};
    if (kindOf(nameOf(path)) || isArchiveName(nameOf(path)) || !isThere(path, status) || !S_ISREG(status.st_mode)) {
        return false;
    }
    if (OrvComtradeLib::StringHelper::toLower(std::string(extensionOf(nameOf(path)))) == ".sqlite") {
        return true;
    }
    std::array<char, begin.size()> bytes{};
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    return file && std::string_view(bytes.data(), bytes.size()) == begin;
}

CatalogueReader::CatalogueReader(const std::string& path, const CatalogueRequest& request)
    : _request(request), _database(knownCatalogue(path), Database::Mode::Read, path),
      _rows(_database, queryFor(request.filter)), _channels(_database, "SELECT name, id FROM channel WHERE layout=?"),
      _archives(_database.number("SELECT COUNT(*) FROM archive")) {
    if (!request.root.empty() && _archives > 1) {
        throw Failure(kWrongUsage, fmt::format("{}: --root is for the catalogue of one archive, and this has {}",
                                               printable(path), _archives));
    }
}

bool CatalogueReader::next() {
    while (_rows.step()) {
        if (_isWanted()) {
            _takeRow();
            return true;
        }
    }
    return false;
}

bool CatalogueReader::_isWanted() {
    const RecordingFilter& filter = _request.filter;
    return filter.isEmpty() || (filter.isWanted(textIn(_rows, Result::Station), instantIn(_rows, Result::Start)) &&
                                (filter.channels.empty() || _hasWantedChannel()));
}

bool CatalogueReader::_hasWantedChannel() {
    const auto layout = numberIn<std::int64_t>(_rows, Result::Layout);
    const auto [known, isNew] = _wantedLayouts.try_emplace(layout, false);
    if (isNew) {
        _channels.add(layout);
        while (!known->second && _channels.step()) {
            known->second =
                _request.filter.isWantedChannel(_channels.text(0).value_or(""), _channels.text(1).value_or(""));
        }
        _channels.begin();
    }
    return known->second;
}

void CatalogueReader::_takeRow() {
    _root = _request.root.empty() ? pathIn(_rows, Result::Root, Result::RootBytes) : _request.root;
    _pathBelowRoot = pathIn(_rows, Result::Path, Result::PathBytes);
    _row.path = joined(_root, _pathBelowRoot);
    _row.verdict = textIn(_rows, Result::Verdict);
    _row.problem = placed(textIn(_rows, Result::Error), _root, _pathBelowRoot);
    _row.station = textIn(_rows, Result::Station);
    _row.recorder = textIn(_rows, Result::Recorder);
    _row.start = instantIn(_rows, Result::Start);
    _row.trigger = instantIn(_rows, Result::Trigger);
    _row.duration = numberIn<int>(_rows, Result::Readable) == 0
                        ? std::nullopt
                        : std::optional(numberIn<double>(_rows, Result::Duration));
    _row.samples = numberIn<std::uint64_t>(_rows, Result::Samples);
    _row.rates = ratesIn(_rows);
    _row.analog = numberIn<std::size_t>(_rows, Result::Analog);
    _row.status = numberIn<std::size_t>(_rows, Result::Status);
    _row.revision = numberIn<int>(_rows, Result::Revision);
    _row.dataType = textIn(_rows, Result::DataType);
}

EntryList recordingsInCatalogue(const std::string& path, const CatalogueRequest& request, bool isOne) {
    CatalogueReader reader(path, request);
    EntryList found;
    std::string root;
    while (reader.next()) {
        if (reader.root() != root) {
            root = reader.root();
            requireRoot(path, root);
        }
        const bool isBelowItsArchive = isOne && reader.archives() == 1;
        found.entries.push_back(entryOf(reader, isBelowItsArchive ? "" : std::string(nameOf(root))));
    }
    if (found.entries.empty()) {
        found.notes.push_back(printable(path) + ": no recording in it that is asked for");
    }
    return found;
}
