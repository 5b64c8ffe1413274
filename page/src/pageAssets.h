#pragma once

#include <string_view>

namespace OrvComtradePage {

extern const std::string_view kPageStyle;  ///< web/*.css of a recording's page
extern const std::string_view kPageScript; ///< web/*.js of a recording's page, one after the other
extern const std::string_view kPageBody;   ///< web/page.html

extern const std::string_view kIndexStyle;  ///< web/index.css
extern const std::string_view kIndexScript; ///< web/index.js

} // namespace OrvComtradePage
