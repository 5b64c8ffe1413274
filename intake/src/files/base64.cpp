#include "files/base64.h"

#include "files/blockLength.h"

#include <array>
#include <cstddef>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char kForeign = 64;
constexpr unsigned char kPadding = 65;

constexpr std::array<unsigned char, 256> makeValues() {
    std::array<unsigned char, 256> values{};
    for (unsigned char& value : values) {
        value = kForeign;
    }
    for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
        values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<unsigned char>(i);
    }
    values[static_cast<unsigned char>('=')] = kPadding;
    return values;
}

constexpr std::array<unsigned char, 256> kValues = makeValues();

char byteOf(std::uint32_t group, unsigned int shift) {
    return static_cast<char>(static_cast<unsigned char>(group >> shift));
}

} // namespace

void Base64Decoder::decode(std::string_view text, std::string& bytes) {
    for (const char letter : text) {
        const unsigned char value = kValues[static_cast<unsigned char>(letter)];
        if (value == kPadding) {
            _endGroup(bytes);
        }
        if (value >= kForeign) {
            continue;
        }
        _group = _group << 6U | value;
        if (++_letters == 4) {
            bytes += byteOf(_group, 16);
            bytes += byteOf(_group, 8);
            bytes += byteOf(_group, 0);
            _letters = 0;
        }
    }
}

void Base64Decoder::finish(std::string& bytes) {
    _endGroup(bytes);
}

void Base64Decoder::_endGroup(std::string& bytes) {
    if (_letters == 2) {
        bytes += byteOf(_group, 4);
    } else if (_letters == 3) {
        bytes += byteOf(_group, 10);
        bytes += byteOf(_group, 2);
    }
    _letters = 0;
}

bool looksLikeBase64(std::string_view text) {
    constexpr std::string_view others = "\"\r\n\t =";
    bool hasLetter = false;
    for (const char letter : text) {
        const bool isOfAlphabet = kValues[static_cast<unsigned char>(letter)] < kForeign;
        if (!isOfAlphabet && others.find(letter) == std::string_view::npos) {
            return false;
        }
        hasLetter = hasLetter || isOfAlphabet;
    }
    return hasLetter;
}

std::uint64_t decodedLength(const ByteSource& text) {
    return text.length() / 4 * 3 + 3;
}

std::string decodedBase64(const ByteSource& text) {
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(decodedLength(text)));
    std::vector<char> block(kBlockLength);
    Base64Decoder decoder;
    std::uint64_t position = 0;
    while (const std::size_t count = text.read(position, block.data(), block.size())) {
        decoder.decode(std::string_view(block.data(), count), bytes);
        position += count;
    }
    decoder.finish(bytes);
    return bytes;
}

} // namespace OrvComtradeIntake
