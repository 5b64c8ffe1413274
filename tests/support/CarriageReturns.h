#pragma once

#include <string>

namespace orvtest {

/// The text with a carriage return put before every line feed that has none.
inline std::string withCarriageReturns(const std::string& text) {
    std::string result;
    char before = '\0';
    for (const char letter : text) {
        if (letter == '\n' && before != '\r') {
            result += '\r';
        }
        result += letter;
        before = letter;
    }
    return result;
}

} // namespace orvtest
