#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace OrvComtradePage {

/// A text escaped for HTML, also for attributes. It must be UTF-8: other bytes stay as they are.
std::string htmlText(const std::string& text);

/// JSON for a script element: `<` and all characters beyond ASCII are escaped.
std::string scriptJson(const nlohmann::ordered_json& value);

} // namespace OrvComtradePage
