#include "AsciiSamples.h"

#include "usualLine.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

AsciiSamples::AsciiSamples(const DataSource& source, const DataLayout& layout, bool stamped)
    : _layout(layout), _stamped(stamped), _lines(source, layout), _plain(layout) {}

const PlacedSample* AsciiSamples::next() {
    if (std::exchange(_isHeld, false)) {
        if (_read.sample.kind == LineKind::Whole) {
            _accept(_read);
            return &_read;
        }
        std::swap(_read, _waiting);
        _isWaiting = true;
    }
    while (_readLine()) {
        if (_isWaiting) {
            _isHeld = true;
            _isWaiting = false;
            _accept(_waiting);
            return &_waiting;
        }
        if (_read.sample.kind == LineKind::Whole) {
            _accept(_read);
            return &_read;
        }
        std::swap(_read, _waiting);
        _isWaiting = true;
    }
    if (std::exchange(_isWaiting, false)) {
        _between.add({LineFault::ShortLine, 0, 0}, _waiting.line, _waiting.position);
    }
    return nullptr;
}

/// Reads on to the next line that may be a sample.
bool AsciiSamples::_readLine() {
    DataLine line;
    while (_lines.next(line)) {
        if (_lines.takeMark()) {
            _between.add({LineFault::Mark, 0, 0}, line.number, 0);
            _brokenBetween = true;
            _bytesBefore = true;
        }
        _understand(line);
        const LineKind kind = _read.sample.kind;
        const bool isSample = kind == LineKind::Whole || kind == LineKind::Short;
        if (isSample) {
            _place(line);
        } else if (kind == LineKind::Bad) {
            _brokenBetween = _brokenBetween || !_contentBefore;
            _noteBetween(_read.sample.faults.front(), line);
        } else if (line.hasReturn && (!line.hasFeed || _contentBefore)) {
            _noteBetween({LineFault::InnerReturn, 0, line.text.size()}, line);
        }
        _contentBefore = _contentBefore || kind != LineKind::Blank;
        _bytesBefore = _bytesBefore || !line.text.empty() || line.hasReturn;
        if (line.hasFeed) {
            if (!_contentBefore) {
                _brokenBetween = _brokenBetween || _bytesBefore;
                _noteBetween({_bytesBefore ? LineFault::BlankLine : LineFault::EmptyLine, 0, 0}, line);
            }
            _contentBefore = false;
            _bytesBefore = false;
        }
        _insideLine = !line.hasFeed;
        if (isSample) {
            return true;
        }
    }
    return false;
}

void AsciiSamples::_understand(const DataLine& line) {
    static_assert(DataLines::kSlack >= kUsualLineSlack);
    const std::size_t comma = !line.text.empty() && line.text.back() == ',' ? 1 : 0;
    const std::size_t length = line.text.size() - comma;
    _isUsual = readUsualLine(line.text.substr(0, length), _layout, _read.sample);
    if (!_isUsual) {
        readAsciiLine(line.text, _layout, _read.sample);
    } else if (comma != 0) {
        _read.sample.remarks.push_back({LineFault::TrailingComma, _layout.fields(), length + 1});
    }
}

void AsciiSamples::_place(const DataLine& line) {
    _read.line = line.number;
    _read.position = line.position;
    const bool isOdd = _isUsual && !_read.sample.faults.empty();
    const bool isPlain = _isUsual && !isOdd && !_stamped;
    _read.asTheLibrary = !_contentBefore && !_brokenBetween && _read.sample.kind == LineKind::Whole && !isOdd &&
                         (isPlain || libraryReadsLine(line.text, _layout, _stamped, _read.sample));
    if (_contentBefore) {
        _read.sample.faults.push_back({LineFault::LineEnd, 0, 0});
    } else if (_read.sample.kind == LineKind::Short) {
        _read.sample.faults.push_back({LineFault::ShortLine, 0, 0});
    } else if (!_read.asTheLibrary && !_brokenBetween && _read.sample.faults.empty() &&
               std::all_of(_read.sample.remarks.begin(), _read.sample.remarks.end(), isSurplus) &&
               !_isOddByStamp(line)) {
        _read.sample.faults.push_back({LineFault::Blanks, 0, 0});
    }
    _brokenBetween = false;
}

/// Whether the library takes the line for another sample by its time stamp alone; the stamps tell that.
bool AsciiSamples::_isOddByStamp(const DataLine& line) const {
    return _stamped && !isStampOf32Bits(_read.sample) && libraryReadsLine(line.text, _layout, false, _read.sample);
}

void AsciiSamples::_noteBetween(const FieldFault& fault, const DataLine& line) {
    _between.add(fault, line.number, line.position);
}

/// The faults of a sample, and of the lines before it, are now known to matter or not.
void AsciiSamples::_accept(PlacedSample& placed) {
    LineFaults& faults = placed.asTheLibrary ? _harmless : _mended;
    for (const FieldFault& fault : placed.sample.faults) {
        faults.add(fault, placed.line, placed.position);
    }
    for (const FieldFault& remark : placed.sample.remarks) {
        (isSurplus(remark) ? _harmless : faults).add(remark, placed.line, placed.position);
    }
    faults.add(_between);
    _between.clear();
}

} // namespace OrvComtradeIntake
