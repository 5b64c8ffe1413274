#pragma once

#include "base/numbers.h"
#include "cfg/CfgLine.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Reports a field. `found` is the text of the field unless `detail` has one.
void report(Findings& findings, Kind kind, const CfgLine& line, std::size_t index, const char* name,
            Detail detail = {});

/// Whether the field is missing, empty or malformed.
Kind kindOfFault(const CfgLine& line, std::size_t index);

/// A field as a name, without commas: the standard allows none in a name. A field may have them inside quotation marks,
/// or if another character separates the fields.
std::string textOf(const CfgLine& line, std::size_t index);

/// The same for any text.
std::string withoutCommas(std::string_view text);

/// A field as a number. If it is not one, that is a finding with `repair`, and the result is `otherwise`.
ReadNumber numberOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                    const char* repair);

/// The same for a number that may be followed by its unit: "1 kHz" is 1000.
double quantityOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                  const char* repair);

/// A field as a whole number that is not negative. If it is not one, that is a finding with `repair`, and the result is
/// nothing.
std::optional<std::uint64_t> countOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name,
                                     const char* repair);

/// Reports the text from the field at `index` on, where the line should have ended.
void reportRest(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name);

/// Whether the line holds a number and nothing else.
bool isNumberAlone(const CfgLine& line);

/// Whether a text is a number, or one with its unit.
bool isNumber(std::string_view text);

} // namespace OrvComtradeIntake
