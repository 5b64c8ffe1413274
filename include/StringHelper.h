#pragma once

#include "OrvComtradeExport.h"

#include <string>
#include <vector>

namespace OrvComtradeLib {

/// Cutting, joining, lowering and integer conversion of `.cfg` texts. Stateless; safe from any thread.
class ORVCOMTRADE_API StringHelper {
public:
    /// The fields of `text` between occurrences of `separator`, untrimmed. Fields between two separators may be empty,
    /// but a separator at the very end yields no empty last field, and an empty text yields no field at all.
    static std::vector<std::string> split(const std::string& text, char separator);

    /// The parts with exactly one `separator` between neighbours; empty parts keep theirs. No parts give "".
    static std::string join(char separator, const std::vector<std::string>& parts);

    /// `text` with every byte lowered by the C library's `tolower` (UTF-8 multibyte characters stay as they are in the
    /// "C" locale).
    static std::string toLower(std::string text);

    /// The decimal integer at the start of `text`: leading white space is skipped, what follows the digits is ignored.
    /// Throws `std::invalid_argument` ("stoi") without digits, `std::out_of_range` ("stoi") beyond 32 bits signed.
    static int toInt(const std::string& text);
};

} // namespace OrvComtradeLib
