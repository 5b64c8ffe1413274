#pragma once

#include <string>

/// A text as a field of a CSV line (RFC 4180), printable. Unless `raw`, one that a spreadsheet would take for a formula
/// (it begins with = + - @) gets an apostrophe before it.
std::string csvField(const std::string& text, bool raw = false);
