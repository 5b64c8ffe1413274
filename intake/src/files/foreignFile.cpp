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

constexpr std::array<Beginning, 17> kBeginnings = {{
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
    {"%PDF-1."sv, "a PDF document"}, // with its version: a station may be called nearly so
    {"%PDF-2."sv, "a PDF document"},
    {"{\\RTF"sv, "an RTF document"},
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "an Office document"},
    {"\x89PNG\r\n\x1A\n"sv, "a picture"},
    {"\x7F"
     "ELF"sv,
     "a program"},
    {"<!DOCTYPE HTML"sv, "a web page"},
    {"<HTML"sv, "a web page"},
    {"<?XML"sv, "an XML document"},
}};

} // namespace

std::string foreignKind(const ByteSource& file) {
    constexpr std::size_t most = 16;
    const std::string first = upperCase(file.part(0, most).all());
    for (const Beginning& beginning : kBeginnings) {
        if (first.compare(0, beginning.bytes.size(), beginning.bytes) == 0) {
            return beginning.kind;
        }
    }
    return {};
}

bool isResourceForkName(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return path.compare(slash == std::string::npos ? 0 : slash + 1, 2, "._") == 0;
}

} // namespace OrvComtradeIntake
