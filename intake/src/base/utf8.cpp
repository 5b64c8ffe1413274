#include "base/utf8.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

bool isBetween(std::string_view bytes, std::size_t index, unsigned char low, unsigned char high) {
    if (index >= bytes.size()) {
        return false;
    }
    const auto byte = static_cast<unsigned char>(bytes[index]);
    return byte >= low && byte <= high;
}

bool isContinued(std::string_view bytes, std::size_t first, std::size_t last) {
    for (std::size_t index = first; index <= last; ++index) {
        if (!isBetween(bytes, index, 0x80, 0xBF)) {
            return false;
        }
    }
    return true;
}

// The second byte of a sequence of three or more keeps out over-long forms, surrogates and what is above U+10FFFF.
bool isSecondByteOf(unsigned char lead, std::string_view bytes) {
    switch (lead) {
    case 0xE0:
        return isBetween(bytes, 1, 0xA0, 0xBF);
    case 0xED:
        return isBetween(bytes, 1, 0x80, 0x9F);
    case 0xF0:
        return isBetween(bytes, 1, 0x90, 0xBF);
    case 0xF4:
        return isBetween(bytes, 1, 0x80, 0x8F);
    default:
        return isBetween(bytes, 1, 0x80, 0xBF);
    }
}

std::size_t lengthByLead(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    if (lead < 0xE0) {
        return 2;
    }
    return lead < 0xF0 ? 3 : 4;
}

} // namespace

bool hasByteOrderMark(std::string_view text) {
    return text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

std::size_t utf8Length(std::string_view bytes) {
    if (bytes.empty()) {
        return 0;
    }
    const auto lead = static_cast<unsigned char>(bytes.front());
    const std::size_t length = lengthByLead(lead);
    if (length <= 1) {
        return length;
    }
    return isSecondByteOf(lead, bytes) && isContinued(bytes, 2, length - 1) ? length : 0;
}

bool isUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace OrvComtradeIntake
