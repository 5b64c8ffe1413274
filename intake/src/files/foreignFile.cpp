#include "files/foreignFile.h"

#include "base/characters.h"

#include <array>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

using namespace std::string_view_literals;

struct Beginning {
    std::string_view bytes; ///< in upper case
    const char* kind;
};

constexpr std::array<Beginning, 11> kBinaryBeginnings = {{
    {"\x00\x05\x16\x07"sv, kResourceFork},
    {"PK\x03\x04"sv, "a zip archive"},
    {"PK\x05\x06"sv, "an empty zip archive"},
    {"\x1F\x8B\x08"sv, "a gzip archive"},
    {"7Z\xBC\xAF\x27\x1C"sv, "a 7z archive"},
    {"RAR!\x1A\x07"sv, "a rar archive"},
    {"\xFD"
     "7ZXZ\x00"sv,
     "an xz archive"},
    {"\x28\xB5\x2F\xFD"sv, "a zstd archive"},
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "an Office document"},
    {"\x89PNG\r\n\x1A\n"sv, "a picture"},
    {"\x7F"
     "ELF"sv,
     "a program"},
}};

constexpr std::array<Beginning, 6> kTextBeginnings = {{
    {"%PDF-1."sv, "a PDF document"},
    {"%PDF-2."sv, "a PDF document"},
    {"{\\RTF"sv, "an RTF document"},
    {"<!DOCTYPE HTML"sv, "a web page"},
    {"<HTML"sv, "a web page"},
    {"<?XML"sv, "an XML document"},
}};

template <std::size_t Count>
const char* kindOf(const std::array<Beginning, Count>& beginnings, const std::string& first) {
    for (const Beginning& beginning : beginnings) {
        if (first.compare(0, beginning.bytes.size(), beginning.bytes) == 0) {
            return beginning.kind;
        }
    }
    return nullptr;
}

/// Whether bytes may be the first line of a configuration: a station, and a comma.
bool mayBeginConfiguration(const std::string& first) {
    const std::size_t end = first.find_first_of(",\r\n");
    return end != std::string::npos && first[end] == ',';
}

} // namespace

std::string foreignKind(const ByteSource& file) {
    constexpr std::size_t most = 4096; // many times the 64 characters of a station (IEEE C37.111-2013, 7.4.2)
    const std::string first = upperCase(file.part(0, most).all());
    const char* kind = kindOf(kBinaryBeginnings, first);
    if (kind == nullptr && !mayBeginConfiguration(first)) { // a station may be called "<HTML> unit"
        kind = kindOf(kTextBeginnings, first);
    }
    return kind == nullptr ? std::string() : kind;
}

bool isResourceForkName(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return path.compare(slash == std::string::npos ? 0 : slash + 1, 2, "._") == 0;
}

} // namespace OrvComtradeIntake
