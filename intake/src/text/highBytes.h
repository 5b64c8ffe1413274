#pragma once

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

/// Judges the bytes above 0x7F of a text that is not UTF-8 by how they are mixed with ASCII. In texts as short as those
/// of a `.cfg`, this shows more than the letter frequencies of a general detector.
class HighBytes {
public:
    explicit HighBytes(std::string_view text);

    std::size_t count() const { return _count; }

    /// Whether most are one or two letters within words of ASCII letters, as accented letters are.
    bool isWesternText() const { return _accents > _words; }

    /// Whether none is part of a word, and all are signs of units: degree, micro, square, ...
    bool isSymbols() const { return _symbols == _count; }

    /// Whether they come only in pairs, nearly all of them common characters of GB 2312, and do not look like words in
    /// capitals of CP1251.
    bool isChineseText() const;

private:
    void _addRun(std::string_view text, std::size_t begin, std::size_t end);
    void _addPairs(std::string_view run);

    std::size_t _count = 0;
    std::size_t _accents = 0;
    std::size_t _words = 0;
    std::size_t _symbols = 0;
    std::size_t _pairs = 0;
    std::size_t _commonPairs = 0;
    std::size_t _oddRuns = 0;
    std::size_t _notCapitals = 0;
};

} // namespace OrvComtradeIntake
