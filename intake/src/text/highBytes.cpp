#include "text/highBytes.h"

#include "base/characters.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

unsigned char byteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

bool isHigh(std::string_view text, std::size_t index) {
    return index < text.size() && byteAt(text, index) >= 0x80;
}

bool isLetterAt(std::string_view text, std::size_t index) {
    return index < text.size() && isLetter(text[index]);
}

bool isWordByte(std::string_view text, std::size_t index) {
    return isHigh(text, index) || isLetterAt(text, index);
}

// ASCII letters of the word that holds the run, as far as a word of any language reaches.
std::size_t lettersAround(std::string_view text, std::size_t begin, std::size_t end) {
    constexpr std::size_t longestWord = 24;
    std::size_t letters = 0;
    const std::size_t first = begin - std::min(begin, longestWord);
    for (std::size_t index = begin; index > first && isWordByte(text, index - 1); --index) {
        letters += isLetterAt(text, index - 1) ? 1U : 0U;
    }
    for (std::size_t index = end; index < end + longestWord && isWordByte(text, index); ++index) {
        letters += isLetterAt(text, index) ? 1U : 0U;
    }
    return letters;
}

bool isSymbol(unsigned char byte) {
    return byte >= 0xA1 && byte <= 0xBF;
}

// Degree, plus or minus, powers and micro, which are no letters of Russian in the code pages of DOS or Windows.
bool isSign(unsigned char byte) {
    return (byte >= 0xB0 && byte <= 0xB3) || byte == 0xB5;
}

} // namespace

HighBytes::HighBytes(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        std::size_t end = begin;
        while (isHigh(text, end)) {
            ++end;
        }
        if (end > begin) {
            _addRun(text, begin, end);
        }
        begin = end + 1;
    }
}

void HighBytes::_addRun(std::string_view text, std::size_t begin, std::size_t end) {
    const std::size_t length = end - begin;
    const std::size_t letters = lettersAround(text, begin, end);
    _count += length;
    if (length <= 2 && letters > length) {
        _accents += length;
    } else if (length > 1 || (letters > 0 && !(letters == 1 && isSign(byteAt(text, begin))))) {
        _words += length;
    }
    if (length == 1 && letters <= 1 && isSymbol(byteAt(text, begin))) {
        ++_symbols;
    }
    _addPairs(text.substr(begin, length));
}

void HighBytes::_addPairs(std::string_view run) {
    _oddRuns += run.size() % 2;
    for (std::size_t index = 0; index + 1 < run.size(); index += 2) {
        const unsigned char lead = byteAt(run, index);
        const unsigned char trail = byteAt(run, index + 1);
        ++_pairs;
        _commonPairs += lead >= 0xB0 && lead <= 0xD7 && trail >= 0xA1 ? 1U : 0U;
        _notCapitals += lead < 0xC0 || lead > 0xDF || trail < 0xC0 || trail > 0xDF ? 1U : 0U;
    }
}

bool HighBytes::isChineseText() const {
    return _pairs > 0 && _oddRuns == 0 && 5 * _commonPairs >= 4 * _pairs && 3 * _notCapitals >= _pairs;
}

} // namespace OrvComtradeIntake
