#include "output/json.h"

#include <OrvComtradePicture/characters.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

using OrvComtradePicture::Character;
using OrvComtradePicture::firstCharacter;
using OrvComtradePicture::isUnseen;
using OrvComtradePicture::isUtf8;

namespace {

constexpr char32_t kFirstOfPairs = 0x10000; // from here on two units of UTF-16 make a character

std::string percentEncoded(const std::string& bytes) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string result;
    for (const char byte : bytes) {
        if (plain.find(byte) != std::string_view::npos) {
            result += byte;
        } else {
            fmt::format_to(std::back_inserter(result), "%{:02X}", static_cast<unsigned char>(byte));
        }
    }
    return result;
}

void appendEscaped(std::string& text, char32_t code) {
    if (code < kFirstOfPairs) {
        fmt::format_to(std::back_inserter(text), "\\u{:04X}", static_cast<unsigned int>(code));
        return;
    }
    const auto rest = static_cast<unsigned int>(code - kFirstOfPairs);
    fmt::format_to(std::back_inserter(text), "\\u{:04X}\\u{:04X}", 0xD800U + (rest >> 10U), 0xDC00U + (rest & 0x3FFU));
}

/// Of JSON in well-formed UTF-8, whose other controls are escaped: what is left of them stands in its strings.
std::string withoutUnseen(const std::string& json) {
    std::string result;
    result.reserve(json.size());
    for (std::string_view left = json; !left.empty();) {
        const Character character = firstCharacter(left);
        left.remove_prefix(character.bytes.size());
        if (character.code && isUnseen(*character.code)) {
            appendEscaped(result, *character.code);
        } else {
            result += character.bytes;
        }
    }
    return result;
}

} // namespace

Json recordingLine(const std::string& path, bool ok) {
    Json line = Json::object();
    setPath(line, "path", path);
    line["ok"] = ok;
    return line;
}

void setPath(Json& object, const std::string& member, const std::string& path) {
    object[member] = path;
    if (!isUtf8(path)) {
        object[member + "Bytes"] = percentEncoded(path);
    }
}

void setPaths(Json& object, const std::string& member, const std::vector<std::string>& paths) {
    object[member] = paths;
    if (std::all_of(paths.begin(), paths.end(), [](const std::string& path) { return isUtf8(path); })) {
        return;
    }
    Json& encoded = object[member + "Bytes"] = Json::array();
    for (const std::string& path : paths) {
        encoded.push_back(percentEncoded(path));
    }
}

std::string lineText(const Json& value) {
    return withoutUnseen(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

void writeLine(const Json& value, Output& out) {
    out.write(lineText(value));
    out.put('\n');
}

void openArray(const Json& object, const char* name, Output& out) {
    std::string text = lineText(object);
    text.pop_back(); // the brace
    out.write(text);
    out.print(",\"{}\":[", name);
}

void closeArray(Output& out) {
    out.write("]}\n");
}

Json instantValue(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? Json(instant->text()) : Json();
}

Json textValue(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

bool isNestedDeeply(std::string_view text) {
    constexpr int most = 64;
    int depth = 0;
    bool isInString = false;
    for (std::size_t i = 0; i < text.size() && depth <= most; ++i) {
        const char character = text[i];
        if (isInString && character == '\\') {
            ++i;
        } else if (character == '"') {
            isInString = !isInString;
        } else if (!isInString) {
            depth += character == '[' || character == '{' ? 1 : character == ']' || character == '}' ? -1 : 0;
        }
    }
    return depth > most;
}
