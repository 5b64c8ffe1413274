#pragma once

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

/// What the bytes above 0x7F of a text that is not UTF-8 look like, by how they stand among the ASCII ones. Texts of a
/// `.cfg` are so short that this says more than the frequencies that a general detector goes by.
class HighBytes {
public:
    explicit HighBytes(std::string_view text);

    std::size_t count() const { return _count; }

    /// One or two of them within words of ASCII letters, as accents are.
    bool isWesternText() const { return _accents > _words; }

    /// None is part of a word, and all are signs of units: degree, micro, square, ...
    bool isSymbols() const { return _symbols == _count; }

    /// Pairs only, nearly all of them among the common characters of GB 2312, and not like words in capitals of CP1251.
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
