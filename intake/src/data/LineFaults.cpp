#include "LineFaults.h"

#include "DataReader.h"
#include "surveyFindings.h"

#include <utility>

namespace OrvComtradeIntake {

namespace {

struct FaultText {
    const char* code;
    const char* found;
    const char* expected;
    const char* done;
    bool isOfField;
    const char* left = "";              ///< what becomes of it where the data stay as they are
    Severity harmless = Severity::Note; ///< then
};

/// In the order of LineFault.
constexpr std::array<FaultText, static_cast<std::size_t>(LineFault::Count)> kTexts = {{
    {"blank-data-line", "an empty line", "a sample in each line", "left out", false},
    {"blank-data-line", "a line of blanks", "a sample in each line", "left out", false},
    {"substitute-character", "0x1A or zero bytes", "a sample in each line", "left out", false},
    {"bad-data-line", "no sample", "a sample in each line", "left out", false},
    {"short-data-line", "fewer columns than channels", "a column for each channel",
     "values taken as missing, states as 0", false},
    {"line-ends", "CR alone at the end", "CR LF or LF", "written with LF", false},
    {"empty-data-field", "nothing", "a number", "written as missing value 99999, as state 0, or counted", true},
    {"bad-data-line", "no number", "a number", "written as missing value 99999, or counted", true},
    {"status-value", "neither one 0 nor one 1", "0 or 1", "written as 0 where it is zero, else as 1", true,
     "read as 0 where it is zero, else as 1"},
    {"decimals", "a decimal point, a plus sign or an exponent", "an integer",
     "written as integers, times a power of ten", true},
    {"stamp-decimals", "a decimal point, a plus sign or an exponent", "an integer",
     "rounded: times come from the sampling rate", true},
    {"stamp-overlong", "more than 64 bits", "a time stamp below 4294967295", "taken as missing", true},
    {"blanks", "blanks around or within a column", "columns parted by commas", "written without blanks", false},
    {"byte-order-mark", "a UTF-8 byte-order mark", "a sample number", "left out", false},
    {"carriage-return", "CR within a line", "CR LF or LF at the end", "taken as a blank", false, "taken as a blank"},
    {"substitute-character", "0x1A or zero bytes in a line", "columns parted by commas", "left out", false},
    {"surplus-columns", "a comma behind the last column", "a column for each channel", "left out", true, "not read"},
    {"surplus-columns", "more columns than channels", "a column for each channel", "left out", true, "not read",
     Severity::Warning},
}};

/// Keeps what is odd about the data apart from the same about the configuration in one file with them.
const char* nameOfPart(const DataSource& source) {
    return source.wholeFile ? "" : "DAT";
}

} // namespace

void LineFaults::add(const FieldFault& fault, std::size_t line, std::uint64_t position) {
    Places& places = _places[static_cast<std::size_t>(fault.fault)];
    if (places.count == 0) {
        places.line = line;
        places.field = fault.field;
        places.position = position + fault.offset;
    }
    places.count += fault.places;
    _any = true;
}

void LineFaults::add(const LineFaults& other) {
    if (!other._any) {
        return;
    }
    _any = true;
    for (std::size_t i = 0; i < _places.size(); ++i) {
        const std::uint64_t count = _places[i].count + other._places[i].count;
        if (_places[i].count == 0) {
            _places[i] = other._places[i];
        }
        _places[i].count = count;
    }
}

void LineFaults::putPlace(LineFault fault, const DataSource& source, Finding& finding) const {
    const Places& places = _places[static_cast<std::size_t>(fault)];
    finding.line = places.line;
    finding.offset = offsetInFile(source, places.position);
}

void LineFaults::tell(bool mended, const DataSource& source, const DataLayout& layout, Findings& findings,
                      const std::string& doneToStamps) const {
    for (std::size_t i = 0; i < _places.size(); ++i) {
        const Places& places = _places[i];
        if (places.count == 0) {
            continue;
        }
        const FaultText& text = kTexts[i];
        Finding finding = dataFinding(mended ? Severity::Warning : text.harmless, text.code, source);
        finding.field = text.isOfField ? fieldName(places.field, layout) : nameOfPart(source);
        putPlace(static_cast<LineFault>(i), source, finding);
        finding.found = text.found;
        finding.expected = text.expected;
        const bool isOfStamps = i == static_cast<std::size_t>(LineFault::DecimalStamp) && !doneToStamps.empty();
        finding.done = !mended ? text.left : isOfStamps ? doneToStamps : text.done;
        finding.places = places.count;
        finding.mended = mended;
        findings.add(std::move(finding));
    }
}

} // namespace OrvComtradeIntake
