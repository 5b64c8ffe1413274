#pragma once

#include "files/ByteSource.h"

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// "UTF-16LE" or "UTF-16BE" if the first characters are ASCII in it, with or without a byte-order mark before them;
/// otherwise empty.
std::string_view utf16NameOf(const ByteSource& file);

/// A text in UTF-16, narrowed to one byte for each two and held in memory. ASCII stays, byte-order marks become blanks,
/// and all other characters become '?'. Findings show its places as those in the file. Throws `std::system_error`.
ByteSource narrowed(const ByteSource& text, std::string_view encoding);

/// The bytes of `file` that a part of its narrowed text stands for. A byte-order mark is put before them to show their
/// encoding; its place is that of the two bytes before them. An empty part gives nothing. Throws `std::system_error`.
ByteSource widened(const ByteSource& part, const ByteSource& file, std::string_view encoding);

} // namespace OrvComtradeIntake
