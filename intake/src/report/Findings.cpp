#include "report/Findings.h"

#include "base/utf8.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

std::string likenessOf(const Finding& finding) {
    std::string key = finding.code;
    key += '\0';
    key += finding.place.field;
    key += '\0';
    key += finding.place.file;
    return key;
}

std::string hexDigits(unsigned char byte) {
    constexpr char digits[] = "0123456789ABCDEF";
    return {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
}

bool isControlCharacter(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    if (character.size() == 2 && lead == 0xC2) {
        return static_cast<unsigned char>(character[1]) < 0xA0; // U+0080 to U+009F
    }
    return lead < 0x20 || lead == 0x7F;
}

Finding findingOf(Kind kind, const Place& place, Detail detail) {
    const KindInfo& info = catalogue(kind);
    Finding finding;
    finding.code = info.code;
    finding.severity = info.severity;
    finding.rule = info.rule;
    finding.clause = info.clause;
    finding.place = place;
    finding.places = detail.places;
    finding.found = detail.found.empty() ? "nothing" : std::move(detail.found);
    finding.expected = detail.expected.empty() ? info.expected : std::move(detail.expected);
    finding.repair = std::move(detail.repair);
    finding.advice = detail.advice.empty() ? info.advice : std::move(detail.advice);
    return finding;
}

} // namespace

const char* severityWord(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        break;
    }
    return "note";
}

void Findings::add(Kind kind, const Place& place, Detail detail) {
    _kinds.set(static_cast<std::size_t>(kind));
    _add(findingOf(kind, place, std::move(detail)));
}

void Findings::add(const Findings& others) {
    _kinds |= others._kinds;
    for (const Finding& finding : others._all) {
        _add(finding);
    }
}

void Findings::_add(Finding finding) {
    std::string likeness = likenessOf(finding);
    const auto place = _places.find(likeness);
    if (place == _places.end() && _all.size() >= _most && finding.severity != Severity::Error) {
        _firstLeftOut = _leftOut++ == 0 ? finding.place : _firstLeftOut;
        return;
    }
    if (place == _places.end()) {
        _places.emplace(std::move(likeness), _all.size());
        _all.push_back(std::move(finding));
        return;
    }
    Finding& alike = _all[place->second];
    alike.places += finding.places;
    if (alike.repair.empty()) {
        alike.repair = std::move(finding.repair);
    }
}

bool Findings::has(Kind kind) const {
    return _kinds.test(static_cast<std::size_t>(kind));
}

void Findings::keepOnly(Kind kind, const std::string& file) {
    const auto isKept = [&](const Finding& finding) {
        return finding.place.file == file && finding.code == catalogue(kind).code;
    };
    if (std::none_of(_all.begin(), _all.end(), isKept)) {
        return;
    }
    const auto isOther = [&](const Finding& finding) { return finding.place.file == file && !isKept(finding); };
    _all.erase(std::remove_if(_all.begin(), _all.end(), isOther), _all.end());
    _places.clear();
    if (_firstLeftOut.file == file) {
        _leftOut = 0;
    }
}

std::vector<Finding> Findings::take() {
    if (_leftOut != 0) {
        _firstLeftOut.field = "findings";
        _all.push_back(findingOf(Kind::FindingsLeftOut, _firstLeftOut,
                                 {std::to_string(_leftOut) + " more, the first of them here", "",
                                  "at most " + std::to_string(_most) + " findings"}));
    }
    _places.clear();
    _kinds.reset();
    _leftOut = 0;
    return std::exchange(_all, {});
}

std::string escaped(std::string_view bytes, std::size_t most) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        const std::string_view character = bytes.substr(0, std::max<std::size_t>(length, 1));
        const bool readable = length != 0 && !isControlCharacter(character);
        std::string piece;
        if (readable) {
            piece = character;
        } else {
            for (const char byte : character) {
                piece += hexDigits(static_cast<unsigned char>(byte));
            }
        }
        if (text.size() + piece.size() > most) {
            return text + "...";
        }
        text += piece;
        bytes.remove_prefix(character.size());
    }
    return text;
}

} // namespace OrvComtradeIntake
