#include "output/colour.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace {

bool hasColours() {
    const char* const unwanted = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    const char* const terminal = std::getenv("TERM");     // NOLINT(concurrency-mt-unsafe)
    return (unwanted == nullptr || *unwanted == '\0') && terminal != nullptr && std::string_view(terminal) != "dumb" &&
           isatty(STDOUT_FILENO) == 1;
}

const char* beginOf(Colour colour) {
    switch (colour) {
    case Colour::Red:
        return "\x1B[31m";
    case Colour::Yellow:
        return "\x1B[33m";
    case Colour::Blue:
        break;
    }
    return "\x1B[34m";
}

} // namespace

std::string inColour(const std::string& text, Colour colour) {
    static const bool isWanted = hasColours();
    return isWanted ? beginOf(colour) + text + "\x1B[0m" : text;
}
