#pragma once

#include <fmt/format.h>

#include <string>

/// "1 error", "2 errors".
template <class Count> std::string counted(Count count, const char* thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}
