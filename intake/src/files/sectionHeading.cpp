#include "files/sectionHeading.h"

#include "base/characters.h"
#include "base/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <system_error>

namespace OrvComtradeIntake {

namespace {

bool startsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

/// Takes the dashes off the front, and gives their number.
std::size_t takeDashes(std::string_view& text) {
    const std::size_t count = std::min(text.find_first_not_of('-'), text.size());
    text.remove_prefix(count);
    return count;
}

/// The same at the end.
std::size_t takeLastDashes(std::string_view& text) {
    const std::size_t last = text.find_last_not_of('-');
    const std::size_t kept = last == std::string_view::npos ? 0 : last + 1;
    const std::size_t count = text.size() - kept;
    text.remove_suffix(count);
    return count;
}

/// Takes a word in upper case off the front, and the blanks before it.
bool takeWord(std::string_view& text, std::string_view word) {
    text = trimmed(text);
    if (!startsWith(text, word)) {
        return false;
    }
    text.remove_prefix(word.size());
    return true;
}

/// Takes a colon off the front, and the blanks around it.
bool takeColon(std::string_view& text) {
    text = trimmed(text);
    const bool has = startsWith(text, ":");
    text.remove_prefix(has ? 1 : 0);
    text = trimmed(text);
    return has;
}

std::string_view takeLetters(std::string_view& text) {
    const auto* const end = std::find_if_not(text.begin(), text.end(), isLetter);
    const std::string_view letters = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(letters.size());
    return letters;
}

std::optional<std::uint64_t> numberAtFront(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    return error == std::errc::result_out_of_range ? std::numeric_limits<std::uint64_t>::max() : number;
}

/// What follows the kind: "BINARY: 4214", "ASCII", ": 4214".
void readFormat(std::string_view text, SectionHeading& heading) {
    takeColon(text);
    const std::size_t colon = text.find(':');
    const bool isCountAlone = !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
    if (isCountAlone) {
        heading.byteCount = numberAtFront(text);
        return;
    }
    heading.format = trimmed(text.substr(0, colon));
    if (colon != std::string_view::npos) {
        heading.byteCount = numberAtFront(trimmed(text.substr(colon + 1)));
    }
}

} // namespace

bool isSectionKind(std::string_view kind) {
    constexpr std::array<std::string_view, 4> kinds = {"CFG", "INF", "HDR", "DAT"};
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

std::optional<SectionHeading> sectionHeading(std::string_view line) {
    if (line.size() > kLongestHeading) {
        return std::nullopt;
    }
    line = trimmed(line);
    while (hasByteOrderMark(line)) {
        line = trimmed(line.substr(kByteOrderMark.size()));
    }
    const std::size_t dashes = takeDashes(line);
    line = trimmed(line);
    if (line.empty() || (line.front() != 'f' && line.front() != 'F')) {
        return std::nullopt; // nearly all lines, without another look
    }
    if (line.find(',') != std::string_view::npos) {
        return std::nullopt; // the first line of a configuration, whose station is called so
    }
    const std::size_t lastDashes = takeLastDashes(line);
    const std::string upper = upperCase(line);
    std::string_view text = upper;
    if (!takeWord(text, "FILE") || !takeWord(text, "TYPE")) {
        return std::nullopt;
    }
    const bool hasColon = takeColon(text);
    SectionHeading heading;
    heading.kind = takeLetters(text);
    heading.isRight = dashes == 3 && lastDashes == 3;
    const bool isWordEnd = text.empty() || isBlank(text.front()) || text.front() == ':';
    const bool isSure = isSectionKind(heading.kind) ? dashes + lastDashes != 0 : heading.isRight && hasColon;
    if (heading.kind.empty() || !isWordEnd || !isSure) {
        return std::nullopt;
    }
    readFormat(text, heading);
    return heading;
}

} // namespace OrvComtradeIntake
