#include "StringHelper.h"

#include "splitInto.h"

#include <cctype>
#include <string_view>

namespace OrvComtradeLib {

std::vector<std::string> StringHelper::split(const std::string& text, char separator) {
    std::vector<std::string_view> fields;
    splitInto(text, separator, std::string::npos, fields);
    return {fields.begin(), fields.end()};
}

std::string StringHelper::join(char separator, const std::vector<std::string>& parts) {
    if (parts.empty()) {
        return {};
    }
    std::string joined = parts.front();
    for (auto part = parts.begin() + 1; part != parts.end(); ++part) {
        joined += separator;
        joined += *part;
    }
    return joined;
}

std::string StringHelper::toLower(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return text;
}

int StringHelper::toInt(const std::string& text) {
    return std::stoi(text);
}

} // namespace OrvComtradeLib
