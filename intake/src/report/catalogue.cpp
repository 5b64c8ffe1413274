#include "report/catalogue.h"

#include <array>

namespace OrvComtradeIntake {

namespace {

constexpr auto N = Severity::Note;
constexpr auto W = Severity::Warning;
constexpr auto E = Severity::Error;
constexpr auto S = Rule::Standard;
constexpr auto D = Rule::Damage;

constexpr const char* kNothing = "no action needed";
constexpr const char* kAskAgain = "request the file again";
constexpr const char* kLook = "check the line; request the file again if it matters";

/// In the order of Kind.
constexpr std::array<KindInfo, static_cast<std::size_t>(Kind::Count)> kCatalogue = {{
    {"no-such-file", E, D, "", "an existing file", "check the path"},
    {"not-a-recording", E, D, "", "a .cfg, .dat or .cff file", "unpack it, or leave it out"},
    {"no-cfg", E, S, "5", "a .cfg or .cff file of this name", "put the .cfg next to the data"},
    {"empty-cfg", E, D, "", "a configuration", "request the file again"},
    {"no-permission", E, D, "", "a readable file", "check the permissions"},
    {"not-a-file", E, D, "", "a regular file", "name a file of the recording"},
    {"file-changed", E, D, "", "a file that does not change while it is read", "read it again when it is complete"},
    {"unreadable", E, D, "", "a file that can be read", "try again, or request the file again"},
    {"no-data", W, S, "5", "a data file of this name", "put the .dat next to the .cfg"},
    {"no-samples", E, D, "8", "at least one complete sample", "request the data again"},
    {"companion-ambiguous", W, D, "5", "one file of this kind", "name the right file, or move the others away"},
    {"section-heading", W, S, "10", "--- file type: SECTION ---", "request the .cff again if a section is missing"},
    {"section-length", W, S, "10", "as many bytes as the heading declares", kAskAgain},
    {"base64", W, S, "10", "raw bytes", kNothing},
    {"limit-exceeded", E, D, "", "a recording within the limits",
     "raise the limit of this name if the file is a recording"},
    {"findings-left-out", W, D, "", "fewer findings", "raise the limit of this name to see all"},

    {"line-ends", N, S, "7.2", "CR LF", kNothing},
    {"byte-order-mark", N, S, "7.2", "the first field", kNothing},
    {"control-characters", W, D, "7.2", "printable text", kLook},
    {"blank-lines", N, S, "7.2", "a line with text", kNothing},
    {"encoding", W, S, "7.2", "UTF-8", "check the names; --encoding sets another encoding"},
    {"damaged-text", W, D, "", "text in one encoding", "check the names; --encoding sets another encoding"},
    {"separators", W, S, "7.2", "fields separated by commas", kNothing},
    {"quotes", N, S, "7.2", "a text without quotation marks", kNothing},
    {"extra-text", N, S, "7.3", "the end of the line", kNothing},

    {"revision", N, S, "7.4.2", "1991, 1999 or 2013", kNothing},
    {"layout", W, S, "7.4.2", "a year that fits the layout of the lines", kNothing},
    {"counts", W, S, "7.4.3", "as many as there are lines", kLook},
    {"unknown-counts", E, S, "7.4.3", "as many channel lines as declared",
     "check the line, and request the file again"},
    {"comma-in-text", W, S, "7.2", "a text without commas", "check the name"},
    {"decimal-comma", W, S, "7.3", "a decimal point", "check the numbers of the line"},
    {"ambiguous-commas", E, S, "7.2", "commas only between fields", "correct the line in a copy"},
    {"field-empty", W, S, "7.4", "a number", "check the field, and correct it in a copy"},
    {"field-missing", W, S, "7.4", "a number", "check the line, and correct it in a copy"},
    {"field-malformed", W, S, "7.4", "a number", "check the field, and correct it in a copy"},
    {"channel-numbers", W, S, "7.4.4", "increasing channel numbers", "check whether channels are missing"},
    {"date-format", N, S, "7.4.8", "dd/mm/yyyy,hh:mm:ss.ssssss", kNothing},
    {"date-unset", N, S, "7.4.8", "a date after 01/01/1970", "get the time from another source"},
    {"date-unknown", W, S, "7.4.8", "dd/mm/yyyy,hh:mm:ss.ssssss", "get the time from another source"},
    {"type-word", W, S, "7.4.9", "ASCII, BINARY, BINARY32 or FLOAT32", "check some values"},
    {"side", W, S, "7.4.4", "P or S", "get the side from another source; values stay as recorded"},
    {"ratio", W, S, "7.4.4", "two numbers other than 0", "get the ratio from another source; values stay as recorded"},
    {"rates-as-lengths", W, S, "7.4.7", "last sample numbers counted from the first sample", kNothing},
    {"rate-zero", W, S, "7.4.7", "0, since the number of rates is 0", "check the times"},
    {"time-multiplier", W, S, "7.4.10", "a number greater than 0", "check the times"},
    {"trigger-outside", W, D, "7.4.8", "a trigger within the recording", "get the trigger time from another source"},
    {"empty-rate", N, S, "7.4.7", "at least one sample at each rate", kNothing},
    {"time-lines", N, S, "7.4.11", "time codes, then time quality", "get the time zone from another source"},

    {"data-mismatch", E, D, "8", "consecutive sample numbers",
     "check whether the data belong to this configuration; --force reads them anyway"},
    {"record-layout", E, D, "8.6", "records of the declared channels",
     "check whether the data belong to this configuration"},
    {"record-padding", W, S, "8.6", "records without padding", "check some values"},
    {"unused-bits", N, S, "8.6", "zeros after the last status channel",
     "check whether the configuration leaves status channels out"},
    {"number-jump", E, D, "8", "the next sample number", "samples are lost or repeated here; request the data again"},
    {"shifted-records", E, D, "8.6", "a record", "bytes are lost or added here; request the data again"},
    {"samples-lost", E, D, "7.4.7", "as many samples as declared", "request the data again"},
    {"sample-count", W, D, "7.4.7", "as many samples as declared", "request the data again if the end matters"},
    {"stray-bytes", N, S, "8.6", "the end of the data", kNothing},
    {"record-cut", W, D, "8", "a complete record", "request the data again if the end matters"},
    {"stamps-disagree", W, D, "8", "time stamps that match the sampling rate", "check the times around it"},
    {"stamp-backwards", W, D, "8", "an increasing time stamp", "check the times around it"},
    {"stamp-gap", N, D, "8", "the usual step", "check the times around it"},
    {"stamp-constant", W, D, "8", "increasing time stamps", "get the times from another source"},
    {"stamp-missing", W, S, "8.4", "a time stamp, since no rate is given", "check the times around it"},
    {"no-times", E, S, "8.4", "time stamps or a sampling rate", "request the data again"},
    {"stamp-wrap", W, S, "8.6", "an increasing time stamp", kNothing},
    {"stamp-range", W, S, "8.4", "a time stamp from 0 to 4294967294", kNothing},
    {"stamp-decimals", N, S, "8.4", "a whole number", kNothing},
    {"value-out-of-range", W, D, "7.4.4", "values within min and max", "check the values there"},
    {"infinite-values", W, D, "8.6", "finite values", "check the values there; JSON shows them as null"},
    {"all-zero", N, D, "8", "a value other than 0", "check whether the recorder measured anything"},
    {"constant-channel", N, D, "8", "a changing value", "check whether the channel is in use"},
    {"missing-values", N, S, "8", "a value", "no action needed; exports leave them out"},
    {"bad-data-line", W, D, "8.4", "a sample in each line", kLook},
    {"short-data-line", W, D, "8.4", "a column for each channel", kLook},
    {"empty-data-field", W, S, "8.4", "a number", kLook},
    {"status-value", W, S, "8.4", "0 or 1", kLook},
    {"decimals", N, S, "8.4", "an integer", kNothing},
    {"surplus-columns", W, S, "8.4", "a column for each channel",
     "check whether the configuration belongs to other data"},
}};

} // namespace

const KindInfo& catalogue(Kind kind) {
    return kCatalogue[static_cast<std::size_t>(kind)];
}

} // namespace OrvComtradeIntake
