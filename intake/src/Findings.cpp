#include "Findings.h"

#include "utf8.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

std::string likeness(const Finding& finding) {
    std::string key = finding.code;
    key += '\0';
    key += static_cast<char>('0' + static_cast<int>(finding.severity));
    key += finding.field;
    key += '\0';
    key += finding.file;
    return key;
}

std::string escaped(unsigned char byte) {
    constexpr char digits[] = "0123456789ABCDEF";
    return {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
}

bool isControl(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    if (character.size() == 2 && lead == 0xC2) {
        return static_cast<unsigned char>(character[1]) < 0xA0; // U+0080 to U+009F
    }
    return lead < 0x20 || lead == 0x7F;
}

} // namespace

void Findings::add(Finding finding) {
    const auto [place, isNew] = _places.try_emplace(likeness(finding), _all.size());
    if (isNew) {
        _all.push_back(std::move(finding));
        return;
    }
    Finding& alike = _all[place->second];
    alike.places += finding.places;
    if (finding.mended && !alike.mended) {
        alike.done = std::move(finding.done);
        alike.mended = true;
    }
}

std::vector<Finding> Findings::take() {
    _places.clear();
    return std::exchange(_all, {});
}

bool Findings::anyMended() const {
    return std::any_of(_all.begin(), _all.end(), [](const Finding& finding) { return finding.mended; });
}

bool Findings::anyError() const {
    return std::any_of(_all.begin(), _all.end(),
                       [](const Finding& finding) { return finding.severity == Severity::Error; });
}

std::string shown(std::string_view bytes, std::size_t most) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        const std::string_view character = bytes.substr(0, std::max<std::size_t>(length, 1));
        const bool readable = length != 0 && !isControl(character);
        std::string piece;
        if (readable) {
            piece = character;
        } else {
            for (const char byte : character) {
                piece += escaped(static_cast<unsigned char>(byte));
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
