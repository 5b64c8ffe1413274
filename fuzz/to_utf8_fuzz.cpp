// The whole input is one text in any code page.

#include "support/check.h"
#include "toUtf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// Length of the UTF-8 character at the beginning of `text`, found by decoding it; 0 if it is ill-formed.
std::size_t characterLength(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])); };
    if (text.empty()) {
        return 0;
    }
    std::size_t length = 1;
    std::uint32_t codePoint = byte(0);
    if (codePoint >= 0x80) {
        if (codePoint >> 5U == 6) {
            length = 2;
        } else if (codePoint >> 4U == 14) {
            length = 3;
        } else if (codePoint >> 3U == 30) {
            length = 4;
        } else {
            return 0;
        }
        codePoint &= 0x7FU >> length;
    }
    if (length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (byte(i) >> 6U != 2) {
            return 0;
        }
        codePoint = codePoint * 64 + (byte(i) & 0x3FU);
    }
    const std::size_t needed = codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return needed == length && !surrogate && codePoint <= 0x10FFFF ? length : 0;
}

/// Number of characters of a UTF-8 text; -1 when it is none.
long characterCount(std::string_view text) {
    long count = 0;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) {
            return -1;
        }
        text.remove_prefix(length);
        ++count;
    }
    return count;
}

struct Counters {
    long cp866 = 0;
    long cp1251 = 0;
    long utf8 = 0;
    long run = 0;
};

/// Number of multibyte characters in a row, and how many bytes they take.
long multibyteRun(std::string_view text, std::size_t& bytes) {
    long count = 0;
    bytes = 0;
    for (std::size_t length = characterLength(text); length > 1; length = characterLength(text.substr(bytes))) {
        bytes += length;
        ++count;
    }
    return count;
}

Counters countersOf(std::string_view text) {
    Counters counters;
    std::size_t i = 0;
    while (i < text.size()) {
        const unsigned int byte = static_cast<unsigned char>(text[i]);
        std::size_t bytes = 0;
        const long run = multibyteRun(text.substr(i), bytes);
        if (byte >= 0x80 && byte <= 0xB0) {
            ++counters.cp866;
        } else if (run > 0) {
            counters.utf8 += run;
            counters.run = run > counters.run ? run : counters.run;
            i += bytes;
            continue;
        } else {
            counters.cp1251 += byte >= 0xC0 ? 1 : 0;
            counters.cp866 += byte >= 0xE0 && byte <= 0xF2 ? 1 : 0;
        }
        ++i;
    }
    return counters;
}

/// What comes out of a single-byte code page: one character for each byte, and the ASCII bytes as they were.
void checkConverted(std::string_view text, const std::string& converted) {
    FUZZ_CHECK(converted.size() >= text.size() && converted.size() <= 3 * text.size());
    FUZZ_CHECK(characterCount(converted) == static_cast<long>(text.size()));
    std::string_view rest = converted;
    for (const char byte : text) {
        FUZZ_CHECK(static_cast<unsigned char>(byte) >= 0x80 || rest.front() == byte);
        rest.remove_prefix(characterLength(rest));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<char[]> exact(new char[size + 1]); // the analysis may read the zero byte, and nothing behind
    std::memcpy(exact.get(), text.c_str(), size + 1);

    checkConverted(text, toUtf8::from866(exact.get(), size));
    checkConverted(text, toUtf8::from1251(exact.get(), size));

    for (std::size_t i = 0; i <= size && i < 64; ++i) {
        const char* cursor = exact.get() + i;
        std::size_t bytes = 0;
        FUZZ_CHECK(toUtf8::isUtf8Seq(cursor) == multibyteRun(std::string_view(text).substr(i), bytes));
        FUZZ_CHECK(cursor == exact.get() + i + bytes);
    }

    toUtf8::DetectRusCodePages detector;
    detector.analize(exact.get(), size);
    const Counters counters = countersOf(text);
    FUZZ_CHECK(detector.cp866Count == counters.cp866 && detector.cp1251Count == counters.cp1251);
    FUZZ_CHECK(detector.utf8Count == counters.utf8 && detector.utf8MaxRun == counters.run);

    const std::string converted = toUtf8::detectAndConvert(text);
    FUZZ_CHECK(converted == detector.convertSC(text, exact.get(), size));
    FUZZ_CHECK(converted == detector.convertSC("", exact.get(), size));
    if (characterCount(text) >= 0) {
        FUZZ_CHECK(converted == text);
    }
    if (counters.cp866 > counters.utf8 && counters.cp866 >= counters.cp1251) {
        FUZZ_CHECK(converted == toUtf8::from866(text.data(), text.size()));
    } else if (counters.cp1251 > counters.utf8) {
        FUZZ_CHECK(converted == toUtf8::from1251(text.data(), text.size()));
    } else {
        FUZZ_CHECK(converted == text);
    }
    FUZZ_CHECK(toUtf8::detectAndConvert(converted) == converted);
    return 0;
}
