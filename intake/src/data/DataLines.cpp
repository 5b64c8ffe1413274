#include "DataLines.h"

#include <algorithm>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kUsualLongest = 64UL * 1024;
constexpr std::size_t kLongestColumn = 64;
constexpr std::size_t kMostParts = 16; // each one more is another try at the whole
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::size_t longestLine(const DataLayout& layout) {
    return std::max(kUsualLongest, layout.fields() * kLongestColumn);
}

std::size_t commasIn(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), ','));
}

} // namespace

DataLines::DataLines(const DataSource& source, const DataLayout& layout)
    : _layout(layout), _longestLine(longestLine(layout)), _lines(source, _longestLine) {}

bool DataLines::next(DataLine& line) {
    if (_given < _parts.size()) {
        _giveNext(line);
    } else if (!_lines.next(line)) {
        return false;
    } else {
        _leaveOutMark(line);
        if (_mayBePart(line)) {
            _join(line);
        }
    }
    _isAfterFeed = line.hasFeed;
    return true;
}

void DataLines::_leaveOutMark(DataLine& line) {
    const bool isFirst = line.position == 0;
    while (isFirst && line.text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        line.text.remove_prefix(kByteOrderMark.size());
        line.position += kByteOrderMark.size();
        _hasMark = true;
    }
}

/// Ends with CR alone before its last column, or in front of it.
bool DataLines::_mayBePart(const DataLine& line) {
    if (!line.hasReturn || line.hasFeed || line.text.empty()) {
        return false;
    }
    const std::size_t due = _layout.fields() - (line.text.back() == ',' ? 0 : 1); // commas
    return commasIn(line.text) < due && _lostColumns(line.text) != 0;
}

/// Makes of the line and those behind it the sample that they are together; else the line stays as it is.
void DataLines::_join(DataLine& line) {
    const bool isJoined = _gather(line);
    const std::size_t length = _text.size() - 1;
    _text.append(kSlack, '\n');
    if (!isJoined) {
        _giveNext(line);
        return;
    }
    line.text = std::string_view(_text).substr(0, length);
    line.number = _parts.front().line.number;
    line.position = _parts.front().line.position;
    _given = _parts.size();
}

/// Reads on until the parts are a sample, or surely none.
bool DataLines::_gather(DataLine& line) {
    _parts.clear();
    _given = 0;
    _text.clear();
    _commas = 0;
    _add(line);
    while (!line.hasFeed && _parts.size() < kMostParts && _lines.next(line)) {
        _add(line);
        if (_commas >= _layout.fields() || _text.size() > _longestLine || _lostColumns(line.text) == 0) {
            return false;
        }
        const bool isAllOfLine = _isAfterFeed && line.hasFeed;
        if ((isAllOfLine || _commas + 1 == _layout.fields()) && _isOneSample(isAllOfLine)) {
            return true;
        }
    }
    return false;
}

void DataLines::_add(const DataLine& line) {
    _parts.push_back({line, _text.size(), line.text.size()});
    _text += line.text;
    _text += '\r';
    _commas += commasIn(line.text);
}

/// Columns of a sample that hold nothing of sense; all of them where the text is no sample.
std::size_t DataLines::_lostColumns(std::string_view text) {
    readAsciiLine(text, _layout, _tried);
    if (_tried.kind != LineKind::Whole) {
        return _layout.fields();
    }
    return static_cast<std::size_t>(std::count_if(_tried.faults.begin(), _tried.faults.end(), isLost));
}

/// Between LFs a CR may have spoilt the column that it stands in; elsewhere the parts may as well be short lines.
bool DataLines::_isOneSample(bool isAllOfLine) {
    const std::size_t lost = _lostColumns(std::string_view(_text).substr(0, _text.size() - 1));
    if (_tried.kind != LineKind::Whole || std::any_of(_tried.remarks.begin(), _tried.remarks.end(), isSurplus)) {
        return false;
    }
    return lost == 0 || (isAllOfLine && lost < _parts.size());
}

void DataLines::_giveNext(DataLine& line) {
    const Part& part = _parts[_given++];
    line = part.line;
    line.text = std::string_view(_text).substr(part.begin, part.length);
}

} // namespace OrvComtradeIntake
