#pragma once

#include "files/ByteSource.h"

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// "UTF-16LE" or "UTF-16BE" where the first characters are ASCII in it, behind a byte-order mark or not; else empty.
std::string_view utf16NameOf(const ByteSource& file);

/// What may be ASCII of a text in that encoding, in memory: a byte for each two of the text. Byte-order marks become
/// blanks, other characters '?'. Places in it are those in the file. Throws `std::system_error`.
ByteSource narrowed(const ByteSource& text, std::string_view encoding);

/// The bytes of `file` that a part of it once narrowed stands for, behind a byte-order mark that shows their encoding;
/// its place is that of the two bytes before them. Nothing for nothing. Throws `std::system_error`.
ByteSource widened(const ByteSource& part, const ByteSource& file, std::string_view encoding);

} // namespace OrvComtradeIntake
