#include "text/Iconv.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>

namespace OrvComtradeIntake {

namespace {

const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1); // NOLINT: iconv's own sign of failure

/// A suffix would change how iconv treats what it can't convert, an empty name stands for the locale's encoding.
bool isName(const std::string& encoding) {
    return !encoding.empty() && encoding.find('/') == std::string::npos;
}

} // namespace

Iconv::Iconv(const std::string& from, const std::string& to)
    : _converter(isName(from) && isName(to) ? iconv_open(to.c_str(), from.c_str()) : kNoConverter) {
    if (_converter == kNoConverter) {
        if (isName(from) && isName(to) && errno == ENOMEM) {
            throw std::bad_alloc();
        }
        // The C library loads its converters, and says the same where there is no memory for that.
        throw UnknownEncoding("unknown encoding, or no memory to load it: " + (from == "UTF-8" ? to : from));
    }
}

Iconv::~Iconv() {
    iconv_close(_converter);
}

std::string Iconv::convert(std::string_view bytes, std::string_view replacement,
                           std::size_t (*lengthOf)(std::string_view left), bool& isDamaged) {
    constexpr auto failed = static_cast<std::size_t>(-1);
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
        if (result != failed || errno == E2BIG) {
            continue;
        }
        converted += replacement;
        isDamaged = true;
        const std::size_t passed = std::clamp<std::size_t>(lengthOf({from, left}), 1, left);
        from += passed;
        left -= passed;
    }
    return converted;
}

} // namespace OrvComtradeIntake
