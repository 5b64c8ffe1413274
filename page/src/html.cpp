#include "html.h"

namespace OrvComtradePage {

std::string htmlText(const std::string& text) {
    std::string safe;
    for (const char character : text) {
        switch (character) {
        case '&':
            safe += "&amp;";
            break;
        case '<':
            safe += "&lt;";
            break;
        case '>':
            safe += "&gt;";
            break;
        case '"':
            safe += "&quot;";
            break;
        case '\'':
            safe += "&#39;";
            break;
        default:
            safe += character;
        }
    }
    return safe;
}

std::string scriptJson(const nlohmann::ordered_json& value) {
    constexpr bool isAscii = true;
    const std::string json = value.dump(-1, ' ', isAscii, nlohmann::ordered_json::error_handler_t::replace);
    std::string safe;
    safe.reserve(json.size());
    for (const char character : json) { // all signs of markup stand in strings
        if (character == '<') {
            safe += "\\u003c";
        } else {
            safe += character;
        }
    }
    return safe;
}

} // namespace OrvComtradePage
