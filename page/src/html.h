#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace OrvComtradePage {

/// A text as it stands in HTML, in an attribute too. Bytes that are not UTF-8 stay: give it none.
std::string htmlText(const std::string& text);

/// JSON in ASCII that may stand in a script element: no `<`, and every other character beyond ASCII escaped.
std::string scriptJson(const nlohmann::ordered_json& value);

} // namespace OrvComtradePage
