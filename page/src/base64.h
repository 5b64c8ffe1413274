#pragma once

#include <string>
#include <string_view>

namespace OrvComtradePage {

/// Base64 with padding (RFC 4648, 4).
std::string base64(std::string_view bytes);

} // namespace OrvComtradePage
