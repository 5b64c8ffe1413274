#pragma once

#include "text/Iconv.h"

#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Encoding of a text, judged as a whole: ASCII, UTF-8, UTF-16LE, UTF-16BE, CP866, CP1251, or uchardet's name. A text
/// counts as UTF-8 even if a little of it is not well-formed: some devices cut names in the middle of a character.
std::string detectEncoding(std::string_view text);

/// Converts texts of one encoding to UTF-8.
class Decoder {
public:
    /// Throws `std::invalid_argument` for a name that iconv does not know.
    explicit Decoder(const std::string& encoding);

    /// Bytes that the encoding does not define become U+FFFD and set `isDamaged`.
    std::string toUtf8(std::string_view bytes, bool& isDamaged);

private:
    std::string _encoding;
    std::optional<Iconv> _iconv; ///< nothing for encodings that are converted in another way
};

/// Converts a single text.
std::string convertToUtf8(std::string_view bytes, const std::string& encoding, bool& isDamaged);

} // namespace OrvComtradeIntake
