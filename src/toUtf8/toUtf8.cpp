#include "toUtf8.h"

#include "codePageTables.h"

namespace toUtf8 {

namespace {

/// Appends a code point of the basic multilingual plane, surrogates excepted.
void appendUtf8(std::string& text, char16_t codePoint) {
    const auto append = [&text](unsigned int byte) { text += static_cast<char>(byte); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0U | codePoint >> 6U);
        append(0x80U | (codePoint & 0x3FU));
    } else {
        append(0xE0U | codePoint >> 12U);
        append(0x80U | (codePoint >> 6U & 0x3FU));
        append(0x80U | (codePoint & 0x3FU));
    }
}

std::string fromCodePage(const std::array<char16_t, 128>& upperHalf, const char* data, std::size_t length) {
    std::string text;
    if (data == nullptr) {
        return text;
    }
    text.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(data[i]);
        if (byte < 0x80) {
            text += data[i];
        } else {
            appendUtf8(text, upperHalf[byte - 0x80U]);
        }
    }
    return text;
}

/// Length of the well-formed multibyte sequence at `bytes` (The Unicode Standard, table 3-7), or 0. Reads no further
/// than the first byte that does not fit, hence never past a terminating zero.
int sequenceLength(const unsigned char* bytes) {
    const auto within = [bytes](int i, unsigned int low, unsigned int high) {
        return bytes[i] >= low && bytes[i] <= high;
    };
    const auto continuation = [&within](int i) { return within(i, 0x80, 0xBF); };
    const unsigned int lead = bytes[0];
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    if (lead < 0xE0) {
        return continuation(1) ? 2 : 0;
    }
    if (lead < 0xF0) {
        const bool second = within(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return second && continuation(2) ? 3 : 0;
    }
    const bool second = within(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
    return second && continuation(2) && continuation(3) ? 4 : 0;
}

} // namespace

std::string from866(const char* data, std::size_t length) {
    return fromCodePage(kCp866, data, length);
}

std::string from1251(const char* data, std::size_t length) {
    return fromCodePage(kCp1251, data, length);
}

int isUtf8Seq(const char*& cursor) {
    if (cursor == nullptr) {
        return 0;
    }
    std::size_t count = 0;
    while (const int length = sequenceLength(reinterpret_cast<const unsigned char*>(cursor))) {
        cursor += length;
        ++count;
    }
    return static_cast<int>(count);
}

std::string detectAndConvert(const std::string& text) {
    DetectRusCodePages detector;
    detector.analize(text.data(), text.size());
    return detector.convertSC(text, text.data(), text.size());
}

} // namespace toUtf8
