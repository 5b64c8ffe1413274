#include "intake/openedChecks.h"

#include "Comtrade.h"
#include "intake/comparison.h"
#include "support/Results.h"
#include "support/files.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace orvtest {

using OrvComtradeIntake::Bytes;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::DataType;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Form;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::open;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Options;
using OrvComtradeIntake::Reader;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::Severity;
using OrvComtradeIntake::Sink;
using OrvComtradeLib::Comtrade;
namespace Enums = OrvComtradeLib::Enums;

Written writtenBy(const Opened& opened, const Form& form) {
    Written written;
    opened.write([&written](std::string_view bytes) { written.cfg += bytes; },
                 [&written](std::string_view bytes) { written.dat += bytes; }, form);
    return written;
}

Bytes bytesToOpen(const Written& written) {
    Bytes bytes;
    bytes.cfg = written.cfg;
    if (!written.dat.empty()) { // an empty file is not the same as none
        bytes.dat = written.dat;
    }
    return bytes;
}

std::string text(const Finding& finding) {
    constexpr const char* kSeverities[] = {"note", "warning", "error"};
    std::string text = kSeverities[static_cast<std::size_t>(finding.severity)];
    text += " " + finding.code + " " + finding.place.file + ":" + std::to_string(finding.place.line) + ":" +
            finding.place.field + " x" + std::to_string(finding.places) + " found '" + finding.found + "' expected '" +
            finding.expected + "' repair '" + finding.repair + "'\n";
    return text;
}

std::string text(const Opened& opened) {
    std::string all;
    for (const Finding& finding : opened.findings()) {
        all += text(finding);
    }
    return all;
}

std::string codesOf(const Opened& opened, Severity least) {
    std::string codes;
    for (const Finding& finding : opened.findings()) {
        if (finding.severity >= least) {
            codes += (codes.empty() ? "" : " ") + finding.code;
        }
    }
    return codes;
}

namespace {

std::set<std::string> partsOf(const std::string& text, char separator) {
    std::istringstream in(text);
    std::set<std::string> parts;
    for (std::string part; std::getline(in, part, separator);) {
        if (!part.empty()) {
            parts.insert(part);
        }
    }
    return parts;
}

} // namespace

std::string unlikeCodes(const std::string& found, const std::string& expected) {
    std::set<std::string> others = partsOf(found, ' ');
    for (const std::string& word : partsOf(expected, ' ')) {
        const bool isOptional = word.back() == '?';
        bool isThere = isOptional;
        for (const std::string& code : partsOf(isOptional ? word.substr(0, word.size() - 1) : word, '|')) {
            isThere = others.erase(code) != 0 || isThere;
        }
        if (!isThere) {
            return "no " + word + " in '" + found + "'";
        }
    }
    return others.empty() ? "" : "too many: " + *others.begin();
}

const Finding* findingOf(const Opened& opened, const std::string& code) {
    const std::vector<Finding>& all = opened.findings();
    const auto place =
        std::find_if(all.begin(), all.end(), [&code](const Finding& finding) { return finding.code == code; });
    return place == all.end() ? nullptr : &*place;
}

namespace {

bool isControl(char letter) {
    return (letter >= '\0' && letter < ' ') || letter == '\x7F';
}

bool hasControls(const std::string& text) {
    return std::any_of(text.begin(), text.end(), isControl);
}

std::string brokenFinding(const Finding& finding) {
    if (finding.code.empty() || finding.places == 0 || finding.expected.empty() || finding.advice.empty()) {
        return "a finding with nothing in it: ";
    }
    if (hasControls(finding.found) || hasControls(finding.expected) || hasControls(finding.repair)) {
        return "a finding with control characters: ";
    }
    return "";
}

bool isError(const Finding& finding) {
    return finding.severity == Severity::Error;
}

template <class Operation> std::string refusal(const char* what, Operation operation) {
    try {
        operation();
    } catch (const std::logic_error&) {
        return "";
    }
    return std::string(what) + " of a recording that is not readable";
}

std::string brokenRefusal(const Opened& opened) {
    Comtrade loaded;
    const Enums::LoadResult result = resultOf(opened.load(loaded));
    if (result != Enums::CfgLoadError && result != Enums::DatLoadError) {
        return "load gave " + std::string(nameOf(result)) + " for a recording that is not readable";
    }
    const std::string columns = refusal("columns", [&opened] { opened.columns(); });
    return columns.empty() ? refusal("writing", [&opened] { writtenBy(opened); }) : columns;
}

/// By channel, then sample; runs do not touch.
bool areInOrder(const Columns& columns, std::size_t channels) {
    const MissingRun* before = nullptr;
    for (const MissingRun& run : columns.missing) {
        const bool follows = before == nullptr || before->channel < run.channel ||
                             (before->channel == run.channel && before->sample + before->count < run.sample);
        const bool isInside = run.channel < channels && run.count > 0 && run.sample >= columns.first &&
                              run.sample + run.count <= columns.first + columns.samples;
        if (!follows || !isInside) {
            return false;
        }
        before = &run;
    }
    return true;
}

/// Each column begins with the state of the first sample, and every entry after that is a change.
bool areChanges(const Columns& columns) {
    for (const auto& changes : columns.states) {
        bool isGood = columns.samples == 0 || (!changes.empty() && changes.front().sample == columns.first);
        for (std::size_t i = 1; i < changes.size(); ++i) {
            isGood = isGood && changes[i].sample > changes[i - 1].sample && changes[i].state != changes[i - 1].state &&
                     changes[i].sample < columns.first + columns.samples;
        }
        if (!isGood) {
            return false;
        }
    }
    return true;
}

void append(Columns& all, const Columns& block, std::vector<std::vector<double>>& values) {
    all.time.insert(all.time.end(), block.time.begin(), block.time.end());
    values.resize(std::max(values.size(), block.a.size()));
    for (std::size_t column = 0; column < block.a.size(); ++column) {
        values[column].insert(values[column].end(), block.column(column), block.column(column) + block.samples);
    }
    all.states.resize(std::max(all.states.size(), block.states.size()));
    for (std::size_t column = 0; column < block.states.size(); ++column) {
        for (const auto& change : block.states[column]) {
            all.states[column].push_back(change);
        }
    }
    for (const MissingRun& run : block.missing) {
        all.missing.push_back(run);
    }
    all.samples += block.samples;
}

/// Runs that touch at the borders of blocks made one, and in order.
std::vector<MissingRun> joined(std::vector<MissingRun> runs) {
    std::sort(runs.begin(), runs.end(), [](const MissingRun& left, const MissingRun& right) {
        return left.channel != right.channel ? left.channel < right.channel : left.sample < right.sample;
    });
    std::vector<MissingRun> result;
    for (const MissingRun& run : runs) {
        const bool touches = !result.empty() && result.back().channel == run.channel &&
                             result.back().sample + result.back().count == run.sample;
        if (touches) {
            result.back().count += run.count;
        } else {
            result.push_back(run);
        }
    }
    return result;
}

} // namespace

Columns columnsByBlocks(const Opened& opened, const Selection& selection, std::size_t most, std::string& broken) {
    Columns all;
    std::vector<std::vector<double>> values;
    bool isFirst = true;
    opened.columns(selection, most, [&](const Columns& block) {
        if (block.samples > most || (!isFirst && block.first != all.first + all.samples) || !areChanges(block)) {
            broken = "blocks do not follow each other";
        }
        all.first = isFirst ? block.first : all.first;
        isFirst = false;
        append(all, block, values);
        return true;
    });
    for (const std::vector<double>& column : values) {
        all.analog.insert(all.analog.end(), column.begin(), column.end());
    }
    all.missing = joined(all.missing);
    return all;
}

namespace {

/// Every second channel backwards, one of them twice, and the middle of the samples.
Selection someOf(const Opened& opened) {
    Selection selection;
    selection.allAnalog = false;
    selection.allStatus = false;
    for (std::size_t i = opened.header().analog.size(); i > 0; i -= std::min<std::size_t>(i, 2)) {
        selection.analog.push_back(i - 1);
    }
    for (std::size_t i = opened.header().status.size(); i > 0; i -= std::min<std::size_t>(i, 2)) {
        selection.status.push_back(i - 1);
    }
    if (!selection.analog.empty()) {
        selection.analog.push_back(selection.analog.front());
    }
    selection.first = opened.header().samples / 3;
    selection.count = (opened.header().samples + 2) / 3;
    return selection;
}

std::string brokenColumns(const Opened& opened, const Comtrade& loaded, const Selection& selection) {
    const Columns columns = opened.columns(selection);
    const std::string difference = firstDifference(columns, loaded, selection);
    if (!difference.empty()) {
        return "columns and load: " + difference;
    }
    if (!areChanges(columns)) {
        return "status columns do not hold changes";
    }
    if (!areInOrder(columns, columns.a.size())) {
        return "missing values: " + missingText(columns.missing);
    }
    std::string broken;
    const std::size_t most = std::max<std::size_t>(1, columns.samples / 3);
    const Columns blocks = columnsByBlocks(opened, selection, most, broken);
    const bool isEmpty = columns.samples == 0;
    return !broken.empty() || isEmpty ? broken : firstDifference(blocks, columns);
}

/// NaN stands where values are missing and nowhere else that has a value in the file.
std::string brokenNans(const Opened& opened) {
    Selection selection;
    selection.missingAsNan = true;
    const Columns marked = opened.columns(selection);
    Columns plain = opened.columns();
    for (const MissingRun& run : plain.missing) {
        for (std::uint64_t i = run.sample; i < run.sample + run.count; ++i) {
            plain.analog[run.channel * plain.samples + i] = std::nan("");
        }
    }
    const std::string difference = firstDifference(marked, plain);
    return difference.empty() ? "" : "missing values as NaN: " + difference;
}

/// Scaled by their factors, raw values are the values to within a few roundings.
std::string brokenRawValues(const Opened& opened) {
    Selection selection;
    selection.raw = true;
    const Columns raw = opened.columns(selection);
    const Columns plain = opened.columns();
    for (std::size_t column = 0; column < raw.a.size(); ++column) {
        for (std::size_t i = 0; i < raw.samples; ++i) {
            const double product = raw.column(column)[i] * raw.a[column];
            const double value = plain.column(column)[i];
            const double terms = std::fabs(product) + std::fabs(raw.b[column]);
            const bool isNear = std::fabs(product + raw.b[column] - value) <= 0x1p-50 * terms + 0x1p-1060;
            if (!isNear && std::isfinite(terms) && std::isfinite(value)) {
                return "raw value " + std::to_string(i) + " of column " + std::to_string(column);
            }
        }
    }
    return "";
}

/// Codes of the findings worse than a note, of which a second opening may have no others.
std::set<std::string> seriousCodes(const Opened& opened) {
    std::set<std::string> codes;
    for (const Finding& finding : opened.findings()) {
        if (finding.severity > Severity::Note) {
            codes.insert(finding.code);
        }
    }
    return codes;
}

std::string newlySerious(const Opened& again, const Opened& opened, const Form& form) {
    std::set<std::string> known = seriousCodes(opened);
    if (!form.encoding.empty()) {
        known.insert("encoding"); // by request
    }
    for (const Finding& finding : again.findings()) {
        if (finding.severity > Severity::Note && known.count(finding.code) == 0) {
            return text(finding);
        }
    }
    return "";
}

void takeIfNear(std::optional<Instant>& found, const std::optional<Instant>& expected) {
    const bool isNear = found && expected && std::abs(found->nanoseconds / 1000 - expected->nanoseconds / 1000) <= 1;
    found = isNear ? expected : found;
}

std::string brokenReopening(const Opened& again, const Opened& opened, const Form& form) {
    if (!again.readable()) {
        return "not readable: " + text(again);
    }
    const std::string serious = newlySerious(again, opened, form);
    const bool hasData = opened.header().samples != 0;
    if (hasData && !serious.empty()) {
        return "a new finding: " + serious;
    }
    OrvComtradeIntake::Header header = again.header();
    header.hdr = opened.header().hdr;
    header.inf = opened.header().inf;
    if (header.revision < 2013) { // whose dates have microseconds
        takeIfNear(header.start, opened.header().start);
        takeIfNear(header.trigger, opened.header().trigger);
    }
    const DataType type = header.dataType;
    const DataType recorded = opened.header().dataType;
    for (std::size_t i = 0; type != recorded && i < header.analog.size(); ++i) {
        header.analog[i].a = opened.header().analog.at(i).a; // values are scaled to what the type holds
    }
    const std::string difference = firstDifference(header, opened.header());
    return difference.empty() ? firstApartness(again, opened, keepsValues(type, recorded) ? 0.0 : 1e-4) : difference;
}

} // namespace

bool keepsValues(DataType written, DataType recorded) {
    return written == recorded || recorded == DataType::Binary;
}

std::string firstBrokenForm(const Opened& opened, const Options& options, const Form& form) {
    const Written written = writtenBy(opened, form);
    Options asWritten = options;
    asWritten.encoding = form.encoding;
    Bytes bytes = bytesToOpen(written);
    if (!form.combined) {
        bytes.hdr = opened.header().hdr;
        bytes.inf = opened.header().inf;
    }
    const Opened again = open(bytes, asWritten);
    std::string broken = brokenReopening(again, opened, form);
    if (!broken.empty()) {
        return broken;
    }
    if (!form.combined) {
        const bool areSame = again.header().hdr == opened.header().hdr && again.header().inf == opened.header().inf;
        const bool haveZeros = (opened.header().hdr + opened.header().inf).find('\0') != std::string::npos;
        const bool maySeemOther =
            haveZeros || !form.encoding.empty(); // these were not written, and zeros may be UTF-16
        return areSame || maySeemOther ? "" : "texts that come with it";
    }
    const Written twice = writtenBy(again, form); // with its texts in lines as the standard has them
    return firstDifference(open(bytesToOpen(twice), asWritten).header(), again.header());
}

namespace {

/// Numbers beyond integers of 64 bits end there in a text for the library alone, which reads no others.
void takeBeyondIntegers(Comtrade& alone, const Comtrade& loaded, const Opened& opened) {
    Selection selection;
    selection.raw = true;
    const Columns raw = opened.columns(selection);
    const std::size_t channels = opened.header().dataType == DataType::Ascii ? raw.a.size() : 0;
    for (std::size_t column = 0; column < channels; ++column) {
        for (std::size_t i = 0; i < raw.samples && i < alone.dat.samples.size(); ++i) {
            const double value = raw.column(column)[i];
            const double end = std::copysign(0x1p63, value) * raw.a[column] + raw.b[column];
            double& found = alone.dat.samples[i].analogValues.at(column);
            if (std::fabs(value) > 0x1p63 && std::fabs(found - end) <= 0x1p-50 * std::fabs(end)) {
                found = loaded.dat.samples.at(i).analogValues.at(column);
            }
        }
    }
}

} // namespace

std::string firstBrokenLibraryForm(const Opened& opened, const std::string& folder) {
    Form form;
    form.reader = Reader::Library;
    const Written written = writtenBy(opened, form);
    const std::string path = folder + "/library.";
    writeFile(path + "cfg", written.cfg);
    writeFile(path + "dat", written.dat);
    Comtrade alone;
    const Enums::LoadResult result = resultOf(alone.load(path + "cfg"));
    std::filesystem::remove(path + "cfg"); // to write over a file waits for the disk
    std::filesystem::remove(path + "dat");
    if (result != Enums::Ok) {
        return "the library gave " + std::string(nameOf(result)) + " for\n" + written.cfg;
    }
    Comtrade loaded;
    opened.load(loaded);
    takeBeyondIntegers(alone, loaded, opened);
    return firstDifference(alone, loaded);
}

namespace {

std::string named(const char* what, const std::string& broken) {
    return broken.empty() ? "" : what + broken;
}

} // namespace

std::string firstBrokenFinding(const Opened& opened) {
    for (const Finding& finding : opened.findings()) {
        const std::string broken = brokenFinding(finding);
        if (!broken.empty()) {
            return broken + text(finding);
        }
    }
    const bool failed = std::any_of(opened.findings().begin(), opened.findings().end(), isError);
    if (!opened.readable() && !failed) {
        return "not readable, and no error: " + text(opened);
    }
    return opened.readable() && opened.header().rates.empty() ? "no rate" : "";
}

std::string firstBrokenLoad(const Opened& opened) {
    if (!opened.readable()) {
        return brokenRefusal(opened);
    }
    Comtrade loaded;
    if (const Enums::LoadResult result = resultOf(opened.load(loaded)); result != Enums::Ok) {
        return "load gave " + std::string(nameOf(result));
    }
    if (!loaded.loaded || loaded.dat.samples.size() != opened.header().samples ||
        loaded.analogChannels.size() != opened.header().analog.size() ||
        loaded.binaryChannels.size() != opened.header().status.size()) {
        return "counts of what was loaded";
    }
    for (const Selection& selection : {Selection{}, someOf(opened)}) {
        std::string broken = brokenColumns(opened, loaded, selection);
        if (!broken.empty()) {
            return broken;
        }
    }
    const std::string nans = brokenNans(opened);
    return nans.empty() ? brokenRawValues(opened) : nans;
}

std::string firstBrokenReading(const Opened& opened, const OpenInto& openInto) {
    Columns columns; // never emptied: what one selection leaves must not show in the next
    columns.analog.assign(100, -1.0);
    columns.missing.push_back({9, 9, 9});
    columns.states.resize(3, {{7, true}, {8, false}});
    Selection marked;
    marked.missingAsNan = true;
    marked.raw = true;
    for (const Selection& selection : {Selection{}, opened.readable() ? someOf(opened) : Selection{}, marked}) {
        const Opened again = openInto(columns, selection);
        if (again.readable() != opened.readable() || text(again) != text(opened)) {
            return "opened with columns, findings are others:\n" + text(again) + "not\n" + text(opened);
        }
        if (!opened.readable()) {
            return columns.analog.empty() && columns.time.empty() && columns.states.empty() ? "" : "columns of nothing";
        }
        const std::string difference = firstDifference(columns, opened.columns(selection));
        if (!difference.empty() || columns.a.size() * columns.samples != columns.analog.size()) {
            return "columns read with the survey: " + difference;
        }
    }
    return "";
}

std::string firstBrokenWriting(const Opened& opened, const Options& options, const std::string& folder) {
    if (!opened.readable()) {
        return "";
    }
    for (const bool isCombined : {false, true}) {
        const char* const form = isCombined ? "written as one file: " : "written in the standard's form: ";
        Form standard;
        standard.combined = isCombined;
        std::string broken = named(form, firstBrokenForm(opened, options, standard));
        if (!broken.empty()) {
            return broken;
        }
    }
    return named("written in the library's form: ", firstBrokenLibraryForm(opened, folder));
}

std::string firstBrokenPromise(const Opened& opened, const Options& options, const std::string& folder) {
    std::string finding = firstBrokenFinding(opened);
    if (!finding.empty()) {
        return finding;
    }
    std::string load = firstBrokenLoad(opened);
    return load.empty() ? firstBrokenWriting(opened, options, folder) : load;
}

namespace {

/// The largest size of a value of a column.
double largestOf(const Columns& columns, std::size_t column) {
    double largest = 0.0;
    for (std::size_t i = 0; i < columns.samples; ++i) {
        const double size = std::fabs(columns.column(column)[i]);
        largest = std::isfinite(size) ? std::max(largest, size) : largest;
    }
    return largest;
}

bool isMissing(const Columns& columns, std::size_t column, std::uint64_t sample) {
    return std::any_of(columns.missing.begin(), columns.missing.end(), [&](const MissingRun& run) {
        return run.channel == column && sample >= run.sample && sample < run.sample + run.count;
    });
}

} // namespace

std::string firstApartness(const Opened& found, const Opened& expected, double slack) {
    const Columns left = found.columns();
    const Columns right = expected.columns();
    if (left.samples != right.samples || left.analog.size() != right.analog.size() ||
        left.states.size() != right.states.size()) {
        return "counts";
    }
    if (missingText(left.missing) != missingText(right.missing)) {
        return "missing values: " + missingText(left.missing) + ", not " + missingText(right.missing);
    }
    for (std::size_t i = 0; i < right.samples; ++i) {
        const bool isSame = same(left.time[i], right.time[i]);
        if (!isSame && !(std::fabs(left.time[i] - right.time[i]) <= 1e-12 * std::fabs(right.time[i]))) {
            return "time " + std::to_string(i) + ": " + std::to_string(left.time[i]) + ", not " +
                   std::to_string(right.time[i]);
        }
    }
    for (std::size_t column = 0; column < right.a.size(); ++column) {
        const double largest = largestOf(right, column);
        const double terms = largest + 2 * std::fabs(right.b[column]);
        const double allowed = (slack + 0x1p-50) * terms;
        for (std::size_t i = 0; i < right.samples; ++i) {
            const double one = left.column(column)[i];
            const double other = right.column(column)[i];
            const bool isNear = same(one, other) || std::fabs(one - other) <= allowed;
            const bool isSameSide = std::signbit(one - right.b[column]) == std::signbit(other);
            const bool isLarge = found.header().dataType == DataType::Ascii || // of 64 bits there: others may be longer
                                 std::fabs(one) + 2 * std::fabs(right.b[column]) + allowed >= largest;
            const bool isGreatest = slack != 0.0 && std::isinf(other) && isSameSide && isLarge; // of a type without it
            if (!isNear && !isGreatest && !isMissing(right, column, i)) {
                return "value " + std::to_string(i) + " of column " + std::to_string(column) + ": " +
                       std::to_string(one) + ", not " + std::to_string(other);
            }
        }
    }
    for (std::size_t column = 0; column < right.states.size(); ++column) {
        if (statesOf(left, column) != statesOf(right, column)) {
            return "states of column " + std::to_string(column);
        }
    }
    return "";
}

} // namespace orvtest
