#include "Iconv.h"

#include <array>
#include <cerrno>
#include <stdexcept>

namespace OrvComtradeIntake {

namespace {

const iconv_t kNone = reinterpret_cast<iconv_t>(-1); // NOLINT: iconv's own sign of failure
constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

} // namespace

Iconv::Iconv(const std::string& encoding) : _converter(kNone) {
    // A suffix would change how iconv treats what it can't convert, an empty name stands for the locale's encoding.
    const bool isName = !encoding.empty() && encoding.find('/') == std::string::npos;
    if (isName) {
        _converter = iconv_open("UTF-8", encoding.c_str());
    }
    if (_converter == kNone) {
        throw std::invalid_argument("unknown encoding: " + encoding);
    }
}

Iconv::~Iconv() {
    iconv_close(_converter);
}

std::string Iconv::toUtf8(std::string_view bytes, bool& isDamaged) {
    iconv(_converter, nullptr, nullptr, nullptr, nullptr);
    std::string source(bytes);
    char* from = source.data();
    std::size_t left = source.size();
    std::string converted;
    std::array<char, 4096> buffer{};
    while (left != 0) {
        char* to = buffer.data();
        std::size_t room = buffer.size();
        const std::size_t result = iconv(_converter, &from, &left, &to, &room);
        converted.append(buffer.data(), buffer.size() - room);
        if (result != kFailed || errno == E2BIG) {
            continue;
        }
        converted += "\xEF\xBF\xBD";
        isDamaged = true;
        ++from;
        --left;
    }
    return converted;
}

} // namespace OrvComtradeIntake
