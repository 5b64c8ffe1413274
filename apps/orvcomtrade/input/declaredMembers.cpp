#include "input/declaredMembers.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <ios>
#include <string_view>

namespace {

// "APPNOTE", the description of the format by its maker, 4.3.14 to 4.3.16.
constexpr std::string_view kEndRecord("PK\5\6", 4);
constexpr std::string_view kEnd64("PK\6\6", 4);
constexpr std::string_view kLocator("PK\6\7", 4);
constexpr std::size_t kEndLength = 22;
constexpr std::size_t kEnd64Length = 56;
constexpr std::size_t kLocatorLength = 20;
constexpr std::size_t kLongestComment = 65535;

template <class Value> Value readLittleEndian(const char* bytes) {
    Value value = 0;
    for (std::size_t i = sizeof value; i > 0; --i) {
        value = static_cast<Value>(value << 8U | static_cast<unsigned char>(bytes[i - 1]));
    }
    return value;
}

std::string bytesAt(std::ifstream& file, std::uint64_t position, std::size_t count) {
    std::string bytes(count, '\0');
    file.clear();
    file.seekg(static_cast<std::streamoff>(position));
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::uint64_t ofLongRecord(std::ifstream& file, std::uint64_t position) {
    constexpr std::uint64_t most = INT64_MAX;
    const std::string record = position > most ? "" : bytesAt(file, position, kEnd64Length);
    if (record.size() < kEnd64Length || record.compare(0, kEnd64.size(), kEnd64) != 0) {
        return 0;
    }
    return std::max(readLittleEndian<std::uint64_t>(record.data() + 24),
                    readLittleEndian<std::uint64_t>(record.data() + 32));
}

} // namespace

std::uint64_t declaredMembers(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff length = file ? std::streamoff(file.tellg()) : 0;
    if (length <= 0) {
        return 0;
    }
    const auto size = static_cast<std::uint64_t>(length);
    const std::uint64_t begin = size - std::min<std::uint64_t>(size, kLocatorLength + kEndLength + kLongestComment);
    const std::string tail = bytesAt(file, begin, static_cast<std::size_t>(size - begin));
    std::uint64_t most = 0;
    for (std::size_t at = tail.find(kEndRecord); at != std::string::npos; at = tail.find(kEndRecord, at + 1)) {
        if (tail.size() - at < kEndLength) {
            break;
        }
        most = std::max<std::uint64_t>(most, readLittleEndian<std::uint16_t>(tail.data() + at + 10));
        const bool hasLocator =
            at >= kLocatorLength && tail.compare(at - kLocatorLength, kLocator.size(), kLocator) == 0;
        if (hasLocator) {
            const char* const offset = tail.data() + at - kLocatorLength + 8;
            most = std::max(most, ofLongRecord(file, readLittleEndian<std::uint64_t>(offset)));
        }
    }
    return most;
}
