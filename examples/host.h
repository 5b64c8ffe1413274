// What every host does the same way: a load with a message for each result, and labels that are safe to show.

#pragma once

#include "Comtrade.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// [load]
inline const char* describe(int result) {
    switch (result) {
    case OrvComtradeLib::Enums::Ok:
        return "read";
    case OrvComtradeLib::Enums::NotComtradeFile:
        return "not a file of a recording: the extension is not .cfg, .dat or .cff";
    case OrvComtradeLib::Enums::CfgFileNotFound:
        return "no configuration file (.cfg) of this name";
    case OrvComtradeLib::Enums::CfgLoadError:
        return "the configuration file cannot be read";
    case OrvComtradeLib::Enums::DatFileNotFound:
        return "no data file (.dat) of this name";
    case OrvComtradeLib::Enums::DatLoadError:
        return "the data file cannot be read, or does not match its configuration";
    default:
        return "not read";
    }
}

// [fresh]
/// Loads a recording into a fresh object. Gives what went wrong, nothing when it is loaded.
inline std::string load(OrvComtradeLib::Comtrade& recording, const std::string& path) {
    if (path.find('.') == std::string::npos) {
        return "the path has no extension: name the .cfg or the .dat file"; // load throws for such a path
    }
    try {
        const int result = recording.load(path);
        return result == OrvComtradeLib::Enums::Ok ? "" : describe(result);
    } catch (const std::bad_alloc&) {
        return "not enough memory";
    }
}
// [/fresh]
// [/load]

struct Character {
    char32_t code;
    std::size_t length; ///< bytes
};

/// The character that `text`, which is not empty, begins with; nothing where that is not well-formed UTF-8.
inline std::optional<Character> firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) < 0x80) {
        return Character{byte(0), 1};
    }
    const std::size_t length = byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : byte(0) < 0xF5 ? 4 : 0;
    if (length == 0 || length > text.size()) {
        return std::nullopt;
    }
    char32_t code = byte(0) & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        code = code << 6U | (byte(i) & 0x3FU);
    }
    const std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    if (code < smallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return std::nullopt;
    }
    return Character{code, length};
}

/// Whether a character is a control, no character at all, or one that moves its neighbours about.
inline bool disturbs(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x200B && code <= 0x200F) ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF || code >= 0xFFF0;
}

/// Text of a recording, which may hold anything, as it may go to a terminal or into a document: what is not
/// well-formed UTF-8, and what disturbs, is a '?'.
inline std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::optional<Character> character = firstCharacter(text);
        const std::size_t length = character ? character->length : 1;
        result += character && !disturbs(character->code) ? std::string(text.substr(0, length)) : "?";
        text.remove_prefix(length);
    }
    return result;
}

/// Loads a recording as `load` does, and reports on standard error what went wrong.
inline bool loadOrTell(OrvComtradeLib::Comtrade& recording, const std::string& path) {
    const std::string problem = load(recording, path);
    if (!problem.empty()) {
        std::cerr << printable(path) << ": " << problem << '\n';
    }
    return problem.empty();
}

/// Texts keep the blanks, and the carriage returns, that the file has around them.
inline std::string trimmed(const std::string& text) {
    const char* const blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

// [labels]
/// What names a channel among the others: its identifier and the circuit component.
inline std::string label(const OrvComtradeLib::BaseChannelConfig& channel) {
    std::string result;
    for (const std::string& text : {channel.channelId, channel.circuitComponent}) {
        const std::string part = printable(trimmed(text));
        result += (result.empty() || part.empty() ? "" : " ") + part;
    }
    return result;
}

/// The unit of the values, which are V where the file says kV: the prefix is in the values already.
inline std::string baseUnit(const OrvComtradeLib::AnalogChannelConfig& channel) {
    const bool hasPrefix = channel.unitMultiplier != 1.0;
    return printable(trimmed(hasPrefix ? channel.unit.substr(1) : channel.unit));
}
// [/labels]

/// The shortest text that reads back as exactly this number.
inline std::string exact(double value) {
    std::array<char, 32> text{};
    const std::to_chars_result end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

/// A number from the command line; nothing where the text is no finite one.
inline std::optional<double> toNumber(std::string_view text) {
    double value = 0.0;
    const std::from_chars_result end = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = end.ec == std::errc() && end.ptr == text.data() + text.size();
    return whole && value - value == 0.0 ? std::optional(value) : std::nullopt;
}

} // namespace host
