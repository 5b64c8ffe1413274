#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

/// How much a finding matters to the reader of the recording.
enum class Severity {
    Note,    ///< worth knowing; no action needed
    Warning, ///< it was repaired, or a person has to judge it
    Error    ///< data are lost or damaged, or the recording cannot be read (see Opened::readable)
};

/// "error", "warning" or "note".
const char* severityWord(Severity severity);

/// What a finding is about.
enum class Rule {
    Standard, ///< a clause of IEEE C37.111 is not followed
    Damage    ///< the files are incomplete, or contradict each other or themselves
};

/// Where something stands in the files of a recording.
struct Place {
    std::string file;         ///< path, or the name given to bytes in memory
    std::size_t line = 0;     ///< 1-based line of a text, or 0: the file as a whole, or binary data
    std::string field;        ///< the field's name in the standard ("endsamp", "a", "A3"), or empty
    std::uint64_t offset = 0; ///< byte offset in `file` of the field, line or record
};

/// One thing that is wrong with a recording. Texts are UTF-8. A byte of the file that is not UTF-8, or that belongs to
/// a control character, is written as a backslash, an x and two hexadecimal digits.
struct Finding {
    std::string code; ///< stable short name, lower case with hyphens ("sample-count"); docs/findings.md lists them all
    Severity severity = Severity::Note;
    Rule rule = Rule::Standard;
    std::string clause;       ///< clause of IEEE C37.111-2013 that asks for what is expected ("7.4.7"), or empty
    Place place;              ///< where it was found first
    std::uint64_t places = 1; ///< number of places where it was found
    std::string found;        ///< what is in the file; "nothing" if it is missing
    std::string expected;     ///< what should be there
    std::string repair;       ///< how it was read anyway; empty if nothing was changed
    std::string advice;       ///< what a person can do about it
};

} // namespace OrvComtradeIntake
