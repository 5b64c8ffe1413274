#pragma once

#include <OrvComtradePicture/characters.h>

#include <cctype>
#include <string>
#include <string_view>
#include <vector>

namespace orvtest {

/// What makes a text no well-formed XML document of the simple kind that pictures are (no comments, no CDATA, no
/// document type), or nothing.
inline std::string faultIn(std::string_view xml) {
    std::vector<std::string> open;
    bool isDone = false;
    const auto isReference = [](std::string_view text) {
        for (const char* const known : {"&amp;", "&lt;", "&gt;", "&quot;"}) {
            if (text.substr(0, std::string_view(known).size()) == known) {
                return true;
            }
        }
        return false;
    };
    while (!xml.empty()) {
        const auto character = OrvComtradePicture::firstCharacter(xml);
        const char32_t code = character.code.value_or(0);
        if (code < 0x20 && code != '\n') {
            return "a control character, or bytes that are not UTF-8";
        }
        if (code == 0xFFFE || code == 0xFFFF) {
            return "a code that is no character";
        }
        if (xml.front() == '&' && !isReference(xml)) {
            return "a reference to nothing";
        }
        if (xml.front() != '<') {
            if (open.empty() && xml.front() != '\n') {
                return "text outside the document";
            }
            xml.remove_prefix(character.bytes.size());
            continue;
        }
        // Attributes are checked for their form: a name, '=', quotes without '<' and with references alone.
        const bool isEnd = xml.substr(0, 2) == "</";
        std::size_t at = isEnd ? 2 : 1;
        std::string name;
        while (at < xml.size() && std::isalpha(static_cast<unsigned char>(xml[at])) != 0) {
            name += xml[at++];
        }
        if (name.empty() || (open.empty() && isDone)) {
            return "an element without a name, or a second document";
        }
        while (at < xml.size() && xml[at] == ' ') {
            while (at < xml.size() &&
                   (xml[at] == ' ' || xml[at] == '-' || std::isalpha(static_cast<unsigned char>(xml[at])) != 0)) {
                ++at;
            }
            if (xml.substr(at, 2) != "=\"") {
                return "an attribute without a value in <" + name + ">";
            }
            for (at += 2; at < xml.size() && xml[at] != '"'; ++at) {
                if (xml[at] == '<' || (xml[at] == '&' && !isReference(xml.substr(at)))) {
                    return "markup in a value of <" + name + ">";
                }
            }
            ++at;
        }
        const bool isEmpty = xml.substr(at, 2) == "/>";
        if (!isEmpty && xml.substr(at, 1) != ">") {
            return "<" + name + "> without an end";
        }
        if (isEnd) {
            if (open.empty() || open.back() != name) {
                return "</" + name + "> without its beginning";
            }
            open.pop_back();
            isDone = open.empty();
        } else if (!isEmpty) {
            open.push_back(name);
        }
        xml.remove_prefix(at + (isEmpty ? 2 : 1));
    }
    return open.empty() && isDone ? "" : "no end";
}

} // namespace orvtest
