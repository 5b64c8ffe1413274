#include "output/terminal.h"

#include "StringHelper.h"

#include <cstdlib>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return value == nullptr ? "" : value;
}

} // namespace

bool isTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool isUtf8Terminal() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) { // the first that is set decides (POSIX, 8.2)
        const std::string locale = OrvComtradeLib::StringHelper::toLower(variable(name));
        if (!locale.empty()) {
            return isTerminal() &&
                   (locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos);
        }
    }
    return false;
}

bool isColourTerminal() {
    return isTerminal() && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

std::size_t terminalWidth() {
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
