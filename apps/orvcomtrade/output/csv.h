#pragma once

#include "output/Output.h"

#include <string>

/// How CSV is written.
struct CsvStyle {
    char separator = ',';
    char point = '.';  ///< of decimals
    bool mark = false; ///< begins with the mark of UTF-8 (U+FEFF), by which Excel recognises it
    bool raw = false;  ///< texts are unchanged, even if a spreadsheet takes them for formulas
    int digits = 0;    ///< significant digits of a value; 0: as few as read back as the same number
};

/// The style that Excel opens by a double click in countries with a decimal comma.
constexpr CsvStyle kExcelStyle = {';', ',', true, false, 0};

/// A text as a field of a CSV line (RFC 4180), printable. Unless the style is raw, one that a spreadsheet would take
/// for a formula (it begins with = + - @) gets an apostrophe before it.
std::string csvField(const std::string& text, const CsvStyle& style = {});

/// A time, which keeps its digits, and a value.
void writeCsvTime(double time, const CsvStyle& style, Output& out);
void writeCsvValue(double value, const CsvStyle& style, Output& out);

/// The mark that the style asks for.
void beginCsv(const CsvStyle& style, Output& out);
