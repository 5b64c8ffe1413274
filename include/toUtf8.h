#pragma once

#include "OrvComtradeExport.h"

#include <cstddef>
#include <string>

/// Recognition of UTF-8, CP866 and CP1251 text and its conversion to UTF-8. No shared state: any number of threads may
/// convert at once. Every input gives some output; nothing fails unless memory runs out.
namespace toUtf8 {

/// `length` bytes of CP866 text as UTF-8; "" for a null pointer.
ORVCOMTRADE_API std::string from866(const char* data, std::size_t length);

/// `length` bytes of CP1251 text as UTF-8; "" for a null pointer. The undefined byte 0x98 and the soft hyphen 0xAD
/// become a space.
ORVCOMTRADE_API std::string from1251(const char* data, std::size_t length);

/// Number of consecutive well-formed UTF-8 multibyte sequences at `cursor`, which moves past them. Stops at a zero
/// byte, an ASCII byte or an ill-formed sequence; the text must end in a zero byte. A null cursor gives 0.
ORVCOMTRADE_API int isUtf8Seq(const char*& cursor);

/// Decides by byte statistics which of the three encodings a text is in.
class ORVCOMTRADE_API DetectRusCodePages {
public:
    /// Fills the four counters from a text that must end in a zero byte at or after `data + length`. A multibyte run
    /// that begins inside the length is counted whole. A null pointer gives zero counters.
    void analize(const char* data, std::size_t length);

    /// The text as UTF-8. If the counters indicate UTF-8 or ASCII it is `source` itself (or the bytes, if `source` is
    /// empty), otherwise the `length` bytes at `data`, converted from CP866 or CP1251.
    std::string convertSC(const std::string& source, const char* data, std::size_t length) const;

    int cp866Count = 0;  ///< bytes that look like CP866 Cyrillic letters
    int cp1251Count = 0; ///< bytes that look like CP1251 Cyrillic letters
    int utf8Count = 0;   ///< well-formed UTF-8 multibyte sequences (characters, not bytes)
    int utf8MaxRun = 0;  ///< longest run of such sequences; takes no part in the decision
};

/// `text` as UTF-8, whichever of the three encodings it is in.
ORVCOMTRADE_API std::string detectAndConvert(const std::string& text);

/// Prints sample conversions to standard output, for a check by eye.
ORVCOMTRADE_API void test();

} // namespace toUtf8
