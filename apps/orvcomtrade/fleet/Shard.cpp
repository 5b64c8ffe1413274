#include "fleet/Shard.h"

#include "fleet/digest.h"

#include <fmt/format.h>

#include <charconv>
#include <string_view>
#include <system_error>

namespace {

constexpr std::uint32_t kMostShards = 1000000;
constexpr std::string_view kBeginning = "shard-";
constexpr std::string_view kMiddle = "-of-";
constexpr std::string_view kEnding = ".jsonl";

std::optional<Shard> shardOf(std::string_view text, std::string_view separator) {
    const std::size_t middle = text.find(separator);
    if (middle == std::string_view::npos) {
        return std::nullopt;
    }
    Shard shard;
    const char* const end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), text.data() + middle, shard.number);
    const auto count = std::from_chars(text.data() + middle + separator.size(), end, shard.count);
    const bool isWhole =
        number.ec == std::errc() && number.ptr == text.data() + middle && count.ec == std::errc() && count.ptr == end;
    if (!isWhole || shard.number < 1 || shard.number > shard.count || shard.count > kMostShards) {
        return std::nullopt;
    }
    return shard;
}

} // namespace

std::optional<Shard> Shard::of(const std::string& text) {
    return shardOf(text, "/");
}

std::optional<Shard> Shard::ofFile(const std::string& name) {
    const std::string_view text = name;
    if (text.size() < kBeginning.size() + kEnding.size() || text.substr(0, kBeginning.size()) != kBeginning ||
        text.substr(text.size() - kEnding.size()) != kEnding) {
        return std::nullopt;
    }
    const std::optional<Shard> shard =
        shardOf(text.substr(kBeginning.size(), text.size() - kBeginning.size() - kEnding.size()), kMiddle);
    return shard && shard->fileName() == name ? shard : std::nullopt;
}

std::string Shard::fileName() const {
    return fmt::format("{}{:04}{}{:04}{}", kBeginning, number, kMiddle, count, kEnding);
}

bool Shard::holds(const std::string& path) const {
    return hashOf(path) % count + 1 == number;
}
