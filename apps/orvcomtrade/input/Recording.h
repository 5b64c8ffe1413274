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

/// Judgement on a recording as a whole.
struct Verdict {
    bool isReadable = false;
    std::string name;        ///< one word
    std::string words;       ///< the sentence without the file
    std::string sentence;    ///< names the file
    std::optional<int> code; ///< the library's result, if it has loaded the recording
};

/// Takes a block of samples, which is valid during the call. Reading ends when it returns false.
using OnBlock = std::function<bool(const OrvComtradeIntake::Columns&)>;

/// Reads those parts of a recording that need a walk over its data. For a recording that cannot be read, only findings
/// and verdict may be called. Only one thread may use an object.
class RecordingReader {
public:
    RecordingReader() = default;
    virtual ~RecordingReader() = default;
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;
    RecordingReader(RecordingReader&&) = delete;
    RecordingReader& operator=(RecordingReader&&) = delete;

    /// What was found; null if the reader looks for nothing.
    virtual const std::vector<OrvComtradeIntake::Finding>* findings() const = 0;

    virtual Verdict verdict() const = 0;

    /// Time of the last sample in seconds, 0 without one.
    virtual double duration() const = 0;

    /// The selected columns, with values in base units. Throws `std::out_of_range` for a channel that does not exist.
    virtual OrvComtradeIntake::Columns columns(const OrvComtradeIntake::Selection& selection) const = 0;

    /// The same in blocks of at most `most` samples, in order.
    virtual void columns(const OrvComtradeIntake::Selection& selection, std::size_t most,
                         const OnBlock& onBlock) const = 0;

    /// The recording as the intake opened it, or null.
    virtual const OrvComtradeIntake::Opened* opened() const { return nullptr; }

    /// The recording as the library has it. Throws a Failure.
    virtual const OrvComtradeLib::Comtrade& comtrade() const = 0;
};

/// Name, unit and side of an analog channel's values, which are in base units.
struct AnalogValues {
    std::string name; ///< display name of the channel, with this unit
    std::string unit;
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded;
};

/// A recording, read either by the intake or by the library alone.
struct Recording {
    std::string cfgFile;              ///< as found, or empty
    std::string datFile;              ///< as found, or empty
    OrvComtradeIntake::Header header; ///< as recorded
    std::vector<AnalogValues> analog; ///< one per analog channel
    std::string problem;              ///< sentence why it cannot be read, or empty
    std::string objection;            ///< sentence why it can be read only with --force, or empty
    std::string noneNote;             ///< sentence that says it is not a recording at all, or empty
    std::unique_ptr<const RecordingReader> reader;
};
