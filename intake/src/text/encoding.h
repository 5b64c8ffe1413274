#pragma once

#include "text/Iconv.h"

#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Name of the encoding that a text is in, judged as a whole: ASCII, UTF-8, UTF-16LE, UTF-16BE, CP866, CP1251, or
/// uchardet's name. A text in which nearly all that is not ASCII is well-formed UTF-8 is UTF-8 (names that a device cut
/// in the middle of a character).
std::string detectEncoding(std::string_view text);

/// Converts texts of one encoding to UTF-8.
class Decoder {
public:
    /// Throws `std::invalid_argument` for a name iconv doesn't know.
    explicit Decoder(const std::string& encoding);

    /// What the encoding doesn't define becomes U+FFFD and sets `isDamaged`.
    std::string toUtf8(std::string_view bytes, bool& isDamaged);

private:
    std::string _encoding;
    std::optional<Iconv> _iconv; ///< none for what is converted otherwise
};

/// One text by a Decoder of its own.
std::string convertToUtf8(std::string_view bytes, const std::string& encoding, bool& isDamaged);

} // namespace OrvComtradeIntake
