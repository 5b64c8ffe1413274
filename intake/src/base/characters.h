#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

// These know only ASCII, whatever the locale of the program is.

inline bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

inline bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// A blank or a control character, zero bytes and 0x1A among them.
inline bool isBlank(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte <= 0x20 || byte == 0x7F;
}

/// Without the blanks at its ends.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

inline std::string upperCase(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return upper;
}

inline char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

inline std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) { return lowerCase(letter); });
    return lower;
}

} // namespace OrvComtradeIntake
