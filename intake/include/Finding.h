#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

/// How much a finding matters to the reader of the recording.
enum class Severity {
    Note,    ///< worth knowing; the recording reads rightly as it is
    Warning, ///< mended, or to be judged by a person
    Error    ///< not mended: the recording, or the part named, can't be read
};

/// One thing about a recording that deviates from the standard or from what the library reads. Texts are UTF-8; bytes
/// of the file that are not are shown as two hexadecimal digits after a backslash and an x.
struct Finding {
    Severity severity = Severity::Note; ///< how much it matters
    std::string code;         ///< stable short name, lower case with hyphens ("line-ends"); docs/intake.md lists them
    std::string file;         ///< path of the file that it is about
    std::size_t line = 0;     ///< 1-based line of a text file or section, or 0: the file as a whole
    std::string field;        ///< the field's name in the standard ("endsamp", "a"), or empty
    std::uint64_t offset = 0; ///< byte offset in `file` of the field, line or record
    std::string found;        ///< what stands there
    std::string expected;     ///< what should stand there
    std::string done;         ///< what was done about it, or empty: nothing
    std::uint64_t places = 1; ///< how many places of the file it covers; line, field and offset are the first
    bool mended = false;      ///< the prepared pair differs from the original files for it
};

} // namespace OrvComtradeIntake
