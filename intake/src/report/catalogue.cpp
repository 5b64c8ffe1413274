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
constexpr const char* kLook = "look at the line, and request the file again if it matters";

/// In the order of Kind.
constexpr std::array<KindInfo, static_cast<std::size_t>(Kind::Count)> kCatalogue = {{
    {"no-such-file", E, D, "", "a file", "check the path"},
    {"not-a-recording", E, D, "", "a .cfg, .dat or .cff", "unpack it, or leave it out"},
    {"no-cfg", E, S, "5", "a .cfg or .cff of this name", "put the .cfg beside the data"},
    {"empty-cfg", E, D, "", "a configuration", "request the file again"},
    {"no-permission", E, D, "", "a file that may be read", "check the permissions"},
    {"not-a-file", E, D, "", "a regular file", "name a file of the recording"},
    {"file-changed", E, D, "", "a file that stays as it is while it is read", "read it again when it is complete"},
    {"unreadable", E, D, "", "a file that can be read", "try again, or request the file again"},
    {"no-data", W, S, "5", "a data file of this name", "put the .dat beside the configuration"},
    {"no-samples", E, D, "8", "at least one whole sample", "request the data again"},
    {"companion-ambiguous", W, D, "5", "one file of this kind", "name the right file, or move the others away"},
    {"section-heading", W, S, "10", "--- file type: SECTION ---", "request the .cff again if a section is missing"},
    {"section-length", W, S, "10", "as many bytes as the heading declares", kAskAgain},
    {"base64", W, S, "10", "the bytes of the data", kNothing},
    {"limit-exceeded", E, D, "", "a recording within the limits",
     "look whether it is a recording; if so, raise the limit of this name"},
    {"findings-left-out", W, D, "", "fewer findings", "raise the limit of this name to see all"},

    {"line-ends", N, S, "7.2", "CR LF", kNothing},
    {"byte-order-mark", N, S, "7.2", "the first field", kNothing},
    {"control-characters", W, D, "7.2", "printable text", kLook},
    {"blank-lines", N, S, "7.2", "no blank lines", kNothing},
    {"encoding", W, S, "7.2", "UTF-8", "look at the names; --encoding chooses another encoding"},
    {"damaged-text", W, D, "", "text in one encoding", "look at the names; --encoding chooses another encoding"},
    {"separators", W, S, "7.2", "fields separated by commas", kNothing},
    {"quotes", N, S, "7.2", "texts without quotation marks around them", kNothing},
    {"extra-text", N, S, "7.3", "the end of the line", kNothing},

    {"revision", N, S, "7.4.2", "1991, 1999 or 2013", kNothing},
    {"layout", W, S, "7.4.2", "lines laid out as in the year of the first line", kNothing},
    {"counts", W, S, "7.4.3", "as many as there are lines", kLook},
    {"unknown-counts", E, S, "7.4.3", "as many channel lines as declared",
     "look at the line, and request the file again"},
    {"comma-in-text", W, S, "7.2", "no comma inside a text", "look at the name"},
    {"decimal-comma", W, S, "7.3", "a decimal point", "look at the numbers of the line"},
    {"ambiguous-commas", E, S, "7.2", "commas between fields alone", "correct the line in a copy"},
    {"field-empty", W, S, "7.4", "a number", "look at the field, and correct it in a copy"},
    {"field-missing", W, S, "7.4", "a number", "look at the line, and correct it in a copy"},
    {"field-malformed", W, S, "7.4", "a number", "look at the field, and correct it in a copy"},
    {"channel-numbers", W, S, "7.4.4", "channels numbered from 1 on", "look whether channels are missing"},
    {"date-format", N, S, "7.4.8", "dd/mm/yyyy,hh:mm:ss.ssssss", kNothing},
    {"date-unset", N, S, "7.4.8", "a date after 01/01/1970", "take the time from elsewhere"},
    {"date-unknown", W, S, "7.4.8", "dd/mm/yyyy,hh:mm:ss.ssssss", "take the time from elsewhere"},
    {"type-word", W, S, "7.4.9", "ASCII, BINARY, BINARY32 or FLOAT32", "look at some values"},
    {"side", W, S, "7.4.4", "P or S", "take the side from elsewhere; values stay as recorded"},
    {"ratio", W, S, "7.4.4", "two numbers other than 0", "take the ratio from elsewhere; values stay as recorded"},
    {"rates-as-lengths", W, S, "7.4.7", "numbers of the last samples, counted from the first sample", kNothing},
    {"rate-zero", W, S, "7.4.7", "0, as the number of rates is 0", "look at the times"},
    {"time-multiplier", W, S, "7.4.10", "a number greater than 0", "look at the times"},
    {"trigger-outside", W, D, "7.4.8", "a trigger within the recording", "take the time of the trigger from elsewhere"},

    {"data-mismatch", E, D, "8", "sample numbers that go on",
     "look whether the data belong to this configuration; --force reads them"},
    {"record-layout", E, D, "8.6", "records of the declared channels",
     "look whether the data belong to this configuration"},
    {"record-padding", W, S, "8.6", "records without padding", "look at some values"},
    {"number-jump", E, D, "8", "the next sample number", "samples are lost or repeated here: request the data again"},
    {"shifted-records", E, D, "8.6", "a record", "bytes are lost or added here: request the data again"},
    {"samples-lost", E, D, "7.4.7", "as many samples as declared", "request the data again"},
    {"sample-count", W, D, "7.4.7", "as many samples as declared", "request the data again if the end matters"},
    {"stray-bytes", N, S, "8.6", "the end of the data", kNothing},
    {"record-cut", W, D, "8", "a whole record", "request the data again if the end matters"},
    {"stamps-disagree", W, D, "8", "time stamps as the sampling rate says", "look at the times around it"},
    {"stamp-backwards", W, D, "8", "a time stamp that goes on", "look at the times around it"},
    {"stamp-gap", N, D, "8", "the usual step", "look at the times around it"},
    {"stamp-constant", W, D, "8", "time stamps that go on", "take the times from elsewhere"},
    {"stamp-missing", W, S, "8.4", "a time stamp, since no rate is given", "look at the times around it"},
    {"no-times", E, S, "8.4", "time stamps or a sampling rate", "request the data again"},
    {"stamp-wrap", W, S, "8.6", "a time stamp that goes on", kNothing},
    {"stamp-range", W, S, "8.4", "a time stamp from 0 to 4294967294", kNothing},
    {"stamp-decimals", N, S, "8.4", "a whole number", kNothing},
    {"value-out-of-range", W, D, "7.4.4", "values within min and max", "look at the values there"},
    {"infinite-values", W, D, "8.6", "finite values", "look at the values there; JSON has null for them"},
    {"all-zero", N, D, "8", "values", "look whether the recorder measured anything"},
    {"constant-channel", N, D, "8", "values that change", "look whether the channel is in use"},
    {"missing-values", N, S, "8", "a value", "no action needed: exports leave them out"},
    {"bad-data-line", W, D, "8.4", "a sample in each line", kLook},
    {"short-data-line", W, D, "8.4", "a column for each channel", kLook},
    {"empty-data-field", W, S, "8.4", "a number", kLook},
    {"status-value", W, S, "8.4", "0 or 1", kLook},
    {"decimals", N, S, "8.4", "an integer", kNothing},
    {"surplus-columns", W, S, "8.4", "a column for each channel",
     "look whether the configuration is that of other data"},
}};

} // namespace

const KindInfo& catalogue(Kind kind) {
    return kCatalogue[static_cast<std::size_t>(kind)];
}

} // namespace OrvComtradeIntake
