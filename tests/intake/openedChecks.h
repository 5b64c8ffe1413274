#pragma once

// What must hold of whatever `open` gives, whatever the bytes. What does not hold comes as a text, empty where all is
// well, so that property tests and the fuzz target can use it too.

#include <OrvComtradeIntake/Intake.h>

#include <cstddef>
#include <functional>
#include <string>

namespace orvtest {

/// A recording as it was written.
struct Written {
    std::string cfg; ///< or a whole `.cff`
    std::string dat;
};

Written writtenBy(const OrvComtradeIntake::Opened& opened, const OrvComtradeIntake::Form& form = {});

/// The files as bytes to open, which they must outlive.
OrvComtradeIntake::Bytes bytesToOpen(const Written& written);

/// A finding on a line of its own.
std::string text(const OrvComtradeIntake::Finding& finding);

/// Every finding on a line of its own.
std::string text(const OrvComtradeIntake::Opened& opened);

/// Short names of the findings that are at least so severe, separated by blanks, in their order.
std::string codesOf(const OrvComtradeIntake::Opened& opened,
                    OrvComtradeIntake::Severity least = OrvComtradeIntake::Severity::Note);

/// Short names that are missing or too many, in words; nothing where they are as expected, in any order. An expected
/// one with a question mark may be there or not, and of "a|b" one is.
std::string unlikeCodes(const std::string& found, const std::string& expected);

/// The first finding of this short name, or none.
const OrvComtradeIntake::Finding* findingOf(const OrvComtradeIntake::Opened& opened, const std::string& code);

/// The findings, and the header where there is a recording: what they promise of each other.
std::string firstBrokenFinding(const OrvComtradeIntake::Opened& opened);

/// Columns, whole and in blocks, of all channels and of some, are the samples that a load gives. A recording that is
/// not readable refuses.
std::string firstBrokenLoad(const OrvComtradeIntake::Opened& opened);

/// The columns of a selection, put together from blocks of at most `most` samples; `broken` says what is wrong with
/// them, if anything.
OrvComtradeIntake::Columns columnsByBlocks(const OrvComtradeIntake::Opened& opened,
                                           const OrvComtradeIntake::Selection& selection, std::size_t most,
                                           std::string& broken);

/// Whether a type keeps every value of another one: not 16 bits or five digits those of 32 bits, nor any the others.
bool keepsValues(OrvComtradeIntake::DataType written, OrvComtradeIntake::DataType recorded);

/// A form of the standard opens to the same header and values, with no finding that is worse than a note and new.
std::string firstBrokenForm(const OrvComtradeIntake::Opened& opened, const OrvComtradeIntake::Options& options,
                            const OrvComtradeIntake::Form& form);

/// The library's form, written to `folder`, gives the library alone the values that `load` gives.
std::string firstBrokenLibraryForm(const OrvComtradeIntake::Opened& opened, const std::string& folder);

/// Opens the same recording again, and reads columns with it.
using OpenInto = std::function<OrvComtradeIntake::Opened(OrvComtradeIntake::Columns& columns,
                                                         const OrvComtradeIntake::Selection& selection)>;

/// Columns that are read while a recording is opened are those that the opened one gives, and so are its findings.
std::string firstBrokenReading(const OrvComtradeIntake::Opened& opened, const OpenInto& openInto);

/// The standard's form, in two files or in one, opens to the same header and values, with no finding that is worse than
/// a note and new. The library's form gives the library alone the values that `load` gives; it is written to `folder`
/// for that.
std::string firstBrokenWriting(const OrvComtradeIntake::Opened& opened, const OrvComtradeIntake::Options& options,
                               const std::string& folder);

/// All of these.
std::string firstBrokenPromise(const OrvComtradeIntake::Opened& opened, const OrvComtradeIntake::Options& options,
                               const std::string& folder);

/// Values of two readings of a recording, to within a few roundings of a channel's largest one, or `slack` times that;
/// times to 1e-12 of themselves; states; missing values.
std::string firstApartness(const OrvComtradeIntake::Opened& found, const OrvComtradeIntake::Opened& expected,
                           double slack = 0.0);

} // namespace orvtest
