#include "fleet/shardLines.h"

#include "output/json.h"

#include <OrvComtradeIntake/Instant.h>
#include <fmt/format.h>

#include <charconv>
#include <cstddef>
#include <iterator>

namespace {

constexpr std::string_view kHeaderBegin = R"({"orvcomtradeIndex":1,)";
static_assert(kIndexVersion == 1, "the beginning of the first line says so");
constexpr std::string_view kEndBegin = R"({"end":true,)";
constexpr std::string_view kLineBegin = R"({"path":")";
constexpr std::string_view kBytesBegin = R"(,"pathBytes":")";

bool beginsWith(std::string_view text, std::string_view begin) {
    return text.substr(0, begin.size()) == begin;
}

/// Members without the braces around them, and a comma behind.
std::string membersOf(const Json& object) {
    std::string text = lineText(object);
    text.back() = ',';
    return text.substr(1);
}

std::string nameMembers(const char* member, const std::string& path) {
    Json object = Json::object();
    setPath(object, member, path);
    return membersOf(object);
}

/// Position of the quote that ends the string that begins before `begin`.
std::size_t endOfString(std::string_view line, std::size_t begin) {
    while (begin < line.size() && line[begin] != '"') {
        begin += line[begin] == '\\' ? 2U : 1U;
    }
    return begin;
}

} // namespace

std::string shardHeader(const Shard& shard, const std::string& root) {
    return fmt::format("{}{}\"shard\":{},\"of\":{}}}", kHeaderBegin, nameMembers("root", root), shard.number,
                       shard.count);
}

bool isShardHeader(std::string_view line) {
    return beginsWith(line, kHeaderBegin) && !isNestedDeeply(line) && Json::accept(line);
}

std::string shardEnd(std::uint64_t recordings, const Digest& digest) {
    return fmt::format("{}\"recordings\":{},\"digest\":\"{}\"}}", kEndBegin, recordings, digest.text());
}

bool isShardEnd(std::string_view line) {
    return beginsWith(line, kEndBegin);
}

std::string lineHead(const FoundRecording& found) {
    std::string head = "{" + nameMembers("path", found.path) + "\"files\":[";
    const char* separator = "{";
    for (const FileState& file : found.files) {
        fmt::format_to(std::back_inserter(head), "{}{}\"bytes\":{},\"modified\":\"{}Z\"}}", separator,
                       nameMembers("name", file.name), file.bytes, OrvComtradeIntake::Instant{file.modified}.text());
        separator = ",{";
    }
    return head + "],\"tool\":\"" ORVCOMTRADE_VERSION "\",";
}

std::string pathOfLine(std::string_view line) {
    if (!beginsWith(line, kLineBegin)) {
        return {};
    }
    const std::size_t end = endOfString(line, kLineBegin.size());
    if (end >= line.size()) {
        return {};
    }
    const std::string_view rest = line.substr(end + 1);
    if (beginsWith(rest, kBytesBegin)) {
        const std::string_view encoded = rest.substr(kBytesBegin.size());
        return percentDecoded(encoded.substr(0, endOfString(encoded, 0)));
    }
    const std::string_view text = line.substr(kLineBegin.size(), end - kLineBegin.size());
    if (text.find('\\') == std::string_view::npos) {
        return std::string(text);
    }
    const Json path = Json::parse('"' + std::string(text) + '"', nullptr, false);
    return path.is_string() ? path.get<std::string>() : std::string();
}

std::string percentDecoded(std::string_view text) {
    constexpr std::size_t digits = 2;
    constexpr int base = 16;
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        if (text[i] == '%' && i + digits < text.size() &&
            std::from_chars(text.data() + i + 1, text.data() + i + 1 + digits, byte, base).ec == std::errc()) {
            i += digits;
        } else {
            byte = static_cast<unsigned char>(text[i]);
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}
