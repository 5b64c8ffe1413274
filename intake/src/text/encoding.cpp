#include "text/encoding.h"

#include "base/characters.h"
#include "base/utf16.h"
#include "base/utf8.h"
#include "text/highBytes.h"
#include "toUtf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <uchardet/uchardet.h>

namespace OrvComtradeIntake {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

constexpr std::size_t kBytesLookedAt = std::size_t{1} << 20U; // as much text as a detector needs by far

// Fewer bytes than these do not distinguish Greek or Thai from Russian.
constexpr std::size_t kSureBytes = 200;

std::string uchardetName(std::string_view text) {
    errno = 0;
    const std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);
    if (!detector) {
        throw std::bad_alloc();
    }
    if (uchardet_handle_data(detector.get(), text.data(), text.size()) != 0) {
        throw std::bad_alloc(); // it fails for nothing else, and another encoding would be as good as a guess
    }
    uchardet_data_end(detector.get());
    std::string name = uchardet_get_charset(detector.get());
    if (errno == ENOMEM) {
        throw std::bad_alloc(); // without a word it leaves out what it had no memory for, and may name another one
    }
    return name;
}

template <std::size_t Size> bool isOneOf(const std::string& name, const std::array<const char*, Size>& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isMultibyte(const std::string& name) {
    return isOneOf(name, std::array{"GB18030", "BIG5", "SHIFT_JIS", "EUC-JP", "EUC-KR", "UHC"});
}

bool isCyrillic(const std::string& name) {
    return isOneOf(name, std::array{"IBM855", "IBM866", "ISO-8859-5", "KOI8-R", "MAC-CYRILLIC", "WINDOWS-1251"});
}

bool isWestern(const std::string& name) {
    return isOneOf(name, std::array{"ISO-8859-1", "ISO-8859-2", "ISO-8859-9", "ISO-8859-15", "ISO-8859-16", "IBM852",
                                    "IBM865", "WINDOWS-1250", "WINDOWS-1252", "WINDOWS-1254", "WINDOWS-1257"});
}

bool isWholly(std::string_view text, const std::string& encoding) {
    bool isDamaged = false;
    convertToUtf8(text, encoding, isDamaged);
    return !isDamaged;
}

std::string cyrillicEncoding(const std::string& text) {
    toUtf8::DetectRusCodePages detector;
    detector.analize(text.c_str(), text.size());
    return detector.cp866Count >= detector.cp1251Count ? "CP866" : "CP1251";
}

std::string eightBitEncoding(const std::string& text) {
    const HighBytes bytes(text);
    std::string likely = uchardetName(text);
    if (bytes.isSymbols()) {
        return "WINDOWS-1252";
    }
    if (bytes.isWesternText()) {
        // A detector takes short texts for the code pages of DOS too often to be followed there.
        const bool isDos = likely.substr(0, 3) == "IBM";
        return isWestern(likely) && !isDos ? likely : "WINDOWS-1252";
    }
    if (isMultibyte(likely) && isWholly(text, likely)) {
        return likely;
    }
    if (bytes.isChineseText() && isWholly(text, "GB18030")) {
        return "GB18030";
    }
    const bool isOther = !likely.empty() && !isCyrillic(likely) && !isWestern(likely) && !isMultibyte(likely);
    if (isOther && bytes.count() >= kSureBytes && isWholly(text, likely)) {
        return likely;
    }
    return cyrillicEncoding(text);
}

bool isDamagedUtf8(std::string_view text) {
    std::size_t characters = 0;
    std::size_t others = 0;
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        characters += length > 1 ? 1 : 0;
        others += length == 0 ? 1 : 0;
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return characters >= 8 * others;
}

std::size_t lengthOfOne(std::string_view /*left*/) {
    return 1;
}

std::size_t lengthOfTwo(std::string_view /*left*/) {
    return 2;
}

std::string repairedUtf8(std::string_view text, bool& isDamaged) {
    std::string repaired;
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        repaired += length == 0 ? kReplacement : text.substr(0, length);
        isDamaged = isDamaged || length == 0;
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return repaired;
}

} // namespace

std::string detectEncoding(std::string_view text) {
    if (const std::string_view wide = utf16Name(text); !wide.empty()) {
        return std::string(wide);
    }
    if (isAscii(text)) {
        return "ASCII";
    }
    if (isUtf8(text) || isDamagedUtf8(text)) {
        return "UTF-8";
    }
    return eightBitEncoding(std::string(text.substr(0, kBytesLookedAt)));
}

Decoder::Decoder(const std::string& encoding) : _encoding(encoding) {
    if (!isOneOf(encoding, std::array{"ASCII", "UTF-8", "CP866", "CP1251"})) {
        _iconv.emplace(encoding, "UTF-8");
    }
}

std::string Decoder::toUtf8(std::string_view bytes, bool& isDamaged) {
    if (_encoding == "CP866") {
        return toUtf8::from866(bytes.data(), bytes.size());
    }
    if (_encoding == "CP1251") {
        return toUtf8::from1251(bytes.data(), bytes.size());
    }
    if (!_iconv) {
        return repairedUtf8(bytes, isDamaged);
    }
    const bool isWide = upperCase(_encoding).substr(0, 6) == "UTF-16";
    return _iconv->convert(bytes, kReplacement, isWide ? lengthOfTwo : lengthOfOne, isDamaged);
}

std::string convertToUtf8(std::string_view bytes, const std::string& encoding, bool& isDamaged) {
    return Decoder(encoding).toUtf8(bytes, isDamaged);
}

} // namespace OrvComtradeIntake
