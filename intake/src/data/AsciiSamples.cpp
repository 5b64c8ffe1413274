#include "data/AsciiSamples.h"

#include "base/characters.h"
#include "base/utf8.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kUsualLongest = 64UL * 1024;
constexpr std::size_t kLongestColumn = 64;
constexpr std::uint64_t kMostAbsent = 1000000;   // columns, whatever is there
constexpr std::uint64_t kMostAbsentPerByte = 16; // a column that is there takes two bytes or more

/// Without the 0x1A or the zero bytes that some programs put at the end of a file.
std::string_view withoutEndMarks(std::string_view text) {
    const std::size_t last = text.find_last_not_of(std::string_view("\x1A\0", 2));
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

std::size_t longestLine(const DataLayout& layout) {
    return std::max(kUsualLongest, layout.fields() * kLongestColumn);
}

} // namespace

AsciiSamples::AsciiSamples(const ByteSource& source, const Header& header, bool asksLibrary)
    : _layout(header, DataType::Ascii), _stamped(header.timesAreStamped()), _asksLibrary(asksLibrary),
      _lines(source, longestLine(_layout)), _fast(_layout), _parser(header), _library(_layout) {}

const PlacedSample* AsciiSamples::next() {
    while (!_lackColumns && (std::exchange(_isHeld, false) || _readSample())) {
        if (endsShort()) { // another sample follows it
            std::swap(_given, _shortLine.front());
            _shortLine.pop_front();
            _isHeld = true;
            _given.sample.add(LineFault::ShortLine);
            _accept(_given);
            return &_given;
        }
        if (_read.sample.kind == LineKind::Whole) {
            _accept(_read);
            return &_read;
        }
        _shortLine.push_back(_read);
    }
    return nullptr;
}

/// Reads on to the next line that may be a sample.
bool AsciiSamples::_readSample() {
    if (!_parts.empty()) {
        std::swap(_read, _parts.front());
        _parts.pop_front();
        return true;
    }
    DataLine line;
    while (_lines.next(line)) {
        if (_readLine(line)) {
            return true;
        }
    }
    return false;
}

bool AsciiSamples::_readLine(const DataLine& line) {
    std::string_view text = line.text;
    while (line.number == 1 && hasByteOrderMark(text)) {
        text.remove_prefix(kByteOrderMark.size());
        _between.add({LineFault::Mark, 0, 0}, line.number, 0);
        _stumbles = true;
    }
    _parser.read(line.isLast ? withoutEndMarks(text) : text, _read.sample);
    const bool hasSurplus = std::any_of(_read.sample.faults.begin(), _read.sample.faults.end(),
                                        [](const FieldFault& fault) { return fault.fault == LineFault::Surplus; });
    const std::size_t begin = line.text.size() - text.size();
    if (hasSurplus && text.find('\r') != std::string_view::npos && _readParts(line, begin)) {
        return true;
    }
    _read.line = line.number;
    _read.position = line.position;
    const LineKind kind = _read.sample.kind;
    if (kind == LineKind::Whole || kind == LineKind::Short) {
        _read.libraryReads = _asksLibrary && !_stumbles && kind == LineKind::Whole &&
                             _lines.lineEnd() != LineReader::LineEnd::Cr &&
                             _library.reads(text, _stamped, _read.sample);
        return true;
    }
    const FieldFault fault =
        kind == LineKind::Bad ? _read.sample.faults.front() : FieldFault{LineFault::BlankLine, 0, 0};
    _between.add(fault, line.number, line.position);
    _stumbles = _stumbles || !line.text.empty() || line.hasReturn; // the library passes over lines of no byte alone
    return false;
}

/// Lines of which some end with CR alone, among others, from an offset in the text on. False if one is no sample.
bool AsciiSamples::_readParts(const DataLine& line, std::size_t begin) {
    while (begin < line.text.size()) {
        const std::size_t end = std::min(line.text.find('\r', begin), line.text.size());
        _part.assign(line.text.substr(begin, end - begin)).append(LineParser::kSlack, '\n');
        PlacedSample part;
        _parser.read(std::string_view(_part).substr(0, end - begin), part.sample);
        part.libraryReads = false;
        part.line = line.number;
        part.position = line.position + begin;
        if (part.sample.kind == LineKind::Whole) {
            if (!_parts.empty()) {
                part.sample.add(LineFault::LineEnd);
            }
            _parts.push_back(std::move(part));
        } else if (part.sample.kind != LineKind::Blank) {
            _parts.clear();
            return false;
        }
        begin = end + 1;
    }
    if (_parts.empty()) {
        return false;
    }
    std::swap(_read, _parts.front());
    _parts.pop_front();
    return true;
}

/// The faults of a sample, and of the lines before it, are now known to matter.
void AsciiSamples::_accept(PlacedSample& placed) {
    for (const FieldFault& fault : placed.sample.faults) {
        _faults.add(fault, placed.line, placed.position);
    }
    _absent += placed.sample.absent;
    _lackColumns = _absent > kMostAbsent && (_absent - kMostAbsent) / kMostAbsentPerByte > placed.position;
    _faults.add(_between);
    _between.clear();
    _stumbles = false;
}

} // namespace OrvComtradeIntake
