#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Finding.h>
#include <OrvComtradeIntake/Header.h>
#include <OrvComtradeIntake/Opened.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace OrvComtradeLib {
class Comtrade;
}

/// What is said of a recording as a whole.
struct Verdict {
    bool isReadable = false;
    std::string name;        ///< one word
    std::string words;       ///< the sentence without the file
    std::string sentence;    ///< names the file
    std::optional<int> code; ///< the library's result, where it was asked
};

/// Takes a block of samples, which is valid during the call; false ends the reading.
using OnBlock = std::function<bool(const OrvComtradeIntake::Columns&)>;

/// Reads what of a recording takes a walk over its data. Nothing but the findings and the verdict is to be had of one
/// that can't be read. Not for several threads at once.
class RecordingReader {
public:
    RecordingReader() = default;
    virtual ~RecordingReader() = default;
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;
    RecordingReader(RecordingReader&&) = delete;
    RecordingReader& operator=(RecordingReader&&) = delete;

    /// What was found, or null where nobody looks for anything.
    virtual const std::vector<OrvComtradeIntake::Finding>* findings() const = 0;

    virtual Verdict verdict() const = 0;

    /// Time of the last sample in seconds, 0 without one.
    virtual double duration() const = 0;

    /// The selected columns, with values in base units. Throws `std::out_of_range` for a channel that there is not.
    virtual OrvComtradeIntake::Columns columns(const OrvComtradeIntake::Selection& selection) const = 0;

    /// The same in blocks of at most `most` samples, in order.
    virtual void columns(const OrvComtradeIntake::Selection& selection, std::size_t most,
                         const OnBlock& onBlock) const = 0;

    /// What the intake opened, or null.
    virtual const OrvComtradeIntake::Opened* opened() const { return nullptr; }

    /// The recording as the library has it. Throws a Failure.
    virtual const OrvComtradeLib::Comtrade& comtrade() const = 0;
};

/// What the values of an analog channel are, which are in base units and on the side asked for.
struct AnalogValues {
    std::string name; ///< display name of the channel, with this unit
    std::string unit;
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded;
};

/// A recording, whoever reads it: the intake, or the library alone.
struct Recording {
    std::string cfgFile;              ///< as found, or empty
    std::string datFile;              ///< as found, or empty
    OrvComtradeIntake::Header header; ///< as recorded
    std::vector<AnalogValues> analog; ///< one per analog channel
    std::string problem;              ///< sentence why it can't be read, or empty
    std::string objection;            ///< sentence why it can be read by force alone, or empty
    std::string noneNote;             ///< sentence that says it is no recording at all, or empty
    std::unique_ptr<const RecordingReader> reader;
};
