#include "encoding.h"

#include "Iconv.h"
#include "highBytes.h"
#include "latinWords.h"
#include "toUtf8.h"
#include "utf8.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <stdexcept>
#include <uchardet/uchardet.h>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kSampleBytes = std::size_t{1} << 20U; // as much text as a detector needs by far

// Fewer bytes than these don't tell Greek or Thai from Russian.
constexpr std::size_t kSureBytes = 200;

std::string uchardetName(std::string_view text) {
    const std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);
    if (!detector) {
        throw std::bad_alloc();
    }
    if (uchardet_handle_data(detector.get(), text.data(), text.size()) != 0) {
        return {};
    }
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
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
    try {
        convertToUtf8(text, encoding, isDamaged);
    } catch (const std::invalid_argument&) {
        return false;
    }
    return !isDamaged;
}

std::string cyrillicEncoding(const std::string& text) {
    toUtf8::DetectRusCodePages detector;
    detector.analize(text.c_str(), text.size());
    return detector.cp866Count >= detector.cp1251Count ? "CP866" : "CP1251";
}

// The likeliest first. A detector takes short texts for the code pages of DOS too often to be followed there.
std::vector<std::string> westernEncodings(const std::string& likely, bool isDosText) {
    std::vector<std::string> names = {"WINDOWS-1252", "WINDOWS-1250"};
    const bool isLikely = isWestern(likely) && likely != "IBM852" && likely != "IBM865";
    if (isLikely) {
        names.insert(names.begin(), likely);
    }
    names.insert(isDosText ? names.begin() : names.end(), {"CP850", "CP852"});
    return names;
}

// Most of all where iconv has no such encoding, as small systems have few.
std::size_t oddCharacters(std::string_view text, const std::string& encoding) {
    try {
        bool isDamaged = false;
        return oddLatinCharacters(Iconv(encoding).toUtf8(text, isDamaged));
    } catch (const std::invalid_argument&) {
        return std::string_view::npos;
    }
}

// That in which the text looks most like words.
std::string westernEncoding(const std::string& likely, const HighBytes& bytes, std::string_view text) {
    std::string best = "WINDOWS-1252";
    std::size_t least = std::string_view::npos;
    for (const std::string& name : westernEncodings(likely, bytes.isDosText())) {
        const std::size_t odd = oddCharacters(text, name);
        if (odd < least) {
            best = name;
            least = odd;
        }
    }
    return best;
}

std::string eightBitEncoding(const std::string& text) {
    const HighBytes bytes(text);
    std::string likely = uchardetName(text);
    if (bytes.isSymbols()) {
        return "WINDOWS-1252";
    }
    if (bytes.isWesternText()) {
        return westernEncoding(likely, bytes, text);
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

std::string repairedUtf8(std::string_view text, bool& isDamaged) {
    std::string repaired;
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        repaired += length == 0 ? "\xEF\xBF\xBD" : text.substr(0, length);
        isDamaged = isDamaged || length == 0;
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return repaired;
}

} // namespace

std::string detectEncoding(std::string_view text) {
    const std::string sample(text.substr(0, kSampleBytes));
    if (isAscii(text)) {
        return "ASCII";
    }
    if (isUtf8(text) || isDamagedUtf8(text)) {
        return "UTF-8";
    }
    return eightBitEncoding(sample);
}

std::string convertToUtf8(std::string_view bytes, const std::string& encoding, bool& isDamaged) {
    if (isAscii(bytes) || encoding == "ASCII" || encoding == "UTF-8") {
        return repairedUtf8(bytes, isDamaged);
    }
    if (encoding == "CP866") {
        return toUtf8::from866(bytes.data(), bytes.size());
    }
    if (encoding == "CP1251") {
        return toUtf8::from1251(bytes.data(), bytes.size());
    }
    return Iconv(encoding).toUtf8(bytes, isDamaged);
}

void requireEncoding(const std::string& encoding) {
    Iconv{encoding};
}

} // namespace OrvComtradeIntake
