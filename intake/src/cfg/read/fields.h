#pragma once

#include "base/numbers.h"
#include "cfg/CfgLine.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Reports a field; `found` is what stands there unless `detail` has it.
void report(Findings& findings, Kind kind, const CfgLine& line, std::size_t index, const char* name,
            Detail detail = {});

/// Whether the field is missing, empty or malformed.
Kind kindOfFault(const CfgLine& line, std::size_t index);

/// A field as a name. Commas, which it has in quotation marks or where others separate the fields, are left out: no
/// name of the standard has one.
std::string textOf(const CfgLine& line, std::size_t index);

/// The same for a text that is no field of its own.
std::string withoutCommas(std::string_view text);

/// A field as a number, or `otherwise` where there is none (a finding, with `repair`).
ReadNumber numberOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                    const char* repair);

/// The same of a number that may have its unit behind it: "1 kHz" is 1000.
double quantityOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                  const char* repair);

/// A field as a whole number that is not negative, or nothing (a finding, with `repair`).
std::optional<std::uint64_t> countOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name,
                                     const char* repair);

/// Reports what stands in the line from the field at `index` on, where it should end.
void reportRest(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name);

/// Whether there is nothing but a number in the line.
bool isNumberAlone(const CfgLine& line);

/// Whether a text is a number, or one with its unit.
bool isNumber(std::string_view text);

} // namespace OrvComtradeIntake
