#pragma once

#include <iconv.h>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Conversion of texts in one encoding to UTF-8.
class Iconv {
public:
    /// Throws `std::invalid_argument` for a name iconv doesn't know.
    explicit Iconv(const std::string& encoding);
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    ~Iconv();

    /// Bytes that the encoding doesn't define become U+FFFD and set `isDamaged`.
    std::string toUtf8(std::string_view bytes, bool& isDamaged);

private:
    iconv_t _converter;
};

} // namespace OrvComtradeIntake
