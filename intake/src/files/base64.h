#pragma once

#include "files/ByteSource.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Decodes base64 text (RFC 4648, section 4) piece by piece. Characters outside its alphabet, such as line ends, blanks
/// and quotation marks, are skipped. "=" ends a group, so lines that were encoded one by one decode as well.
class Base64Decoder {
public:
    /// Appends the bytes that `text` completes to `bytes`.
    void decode(std::string_view text, std::string& bytes);

    /// Appends the bytes of a last group that lacks its "=".
    void finish(std::string& bytes);

private:
    void _endGroup(std::string& bytes);

    std::uint32_t _group = 0;
    unsigned int _letters = 0; ///< of the group, 0 to 3
};

/// Whether there is a letter of base64's alphabet in the text, and nothing else but "=", quotation marks, blanks and
/// line ends.
bool looksLikeBase64(std::string_view text);

/// Upper bound of the bytes that the text stands for.
std::uint64_t decodedLength(const ByteSource& text);

/// The bytes that all of the text stands for. Throws `std::system_error`.
std::string decodedBase64(const ByteSource& text);

} // namespace OrvComtradeIntake
