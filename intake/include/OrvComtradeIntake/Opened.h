#pragma once

#include "Columns.h"
#include "Finding.h"
#include "Form.h"
#include "Header.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace OrvComtradeLib {
class Comtrade;
}

namespace OrvComtradeIntake {

struct Recording; // internal

/// How the recorded values of an analog channel become values in base units: value = raw * a + b.
struct Scale {
    double a = 1.0;             ///< the product is rounded before `b` is added: no fused multiply-add
    double b = 0.0;             ///< base units
    Side side = Side::Recorded; ///< of the values; Recorded if the line declares none
};

/// A recording that `open` has examined. It holds the configuration and keeps the files open, but holds no samples. It
/// writes nothing to a disk. It can be moved but not copied. Several threads may call its const members at the same
/// time.
class Opened {
public:
    Opened(Opened&& other) noexcept;
    Opened& operator=(Opened&& other) noexcept;
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened();

    /// Whether there is a recording to load. If not, a finding of severity Error says where and why.
    bool readable() const;

    /// What deviates from the standard and what is damaged, in the order of the files. The first call reads the data
    /// once more, to compare every value with its range.
    const std::vector<Finding>& findings() const;

    /// Everything as recorded; for a recording that is not readable, as far as it was understood.
    const Header& header() const;

    const std::string& cfgFile() const; ///< path of the configuration (or `.cff`) as found, or empty
    const std::string& datFile() const; ///< path of the data (or `.cff`) as found, or empty: configuration only

    /// Whether `Comtrade::load` of the path gives the same values, times and states as `load`. This runs the library
    /// itself, not a model of it. Throws `std::system_error` if the configuration has changed since `open` or can't be
    /// read any more.
    bool librarySuffices() const;

    /// Side of the values that `load` and `columns` give for a 0-based analog channel; Recorded if its line declares
    /// none.
    Side sideOf(std::size_t analogChannel) const;

    /// The scale that gives the values of a 0-based analog channel on any side, whatever the options say. It applies to
    /// the raw values of `columns`. The scale is that of the channel's own side for Side::Recorded, and also if the
    /// line has no side or no usable ratio.
    Scale scaleOf(std::size_t analogChannel, Side side) const;

    /// Unit of the values that `load` and `columns` give for a 0-based analog channel: that of the header without its
    /// prefix ("V" for "kV").
    std::string unitOf(std::size_t analogChannel) const;

    /// Fills the library's object with values in base units on the side of the options. The library reads the data
    /// itself if it reads them correctly. Otherwise the object gets what the library would read from correct files.
    ///
    /// Returns what `Comtrade::load` returns; `CfgLoadError` or `DatLoadError` for a recording that is not readable.
    /// Throws `std::bad_alloc` if memory runs out, also in the library. Throws `std::system_error` if a file cannot be
    /// read, if the data have changed since `open`, or if the system refuses the file in memory through which the
    /// library gets the configuration.
    int load(OrvComtradeLib::Comtrade& comtrade) const;

    /// The selected columns. Throws `std::out_of_range` for a channel that does not exist, `std::logic_error` for a
    /// recording that is not readable, `std::system_error` if the data can't be read any more or have changed since
    /// `open`.
    Columns columns(const Selection& selection = {}) const;

    /// The same into columns whose storage is reused if it is large enough. Use it to read many recordings, or many
    /// parts of one: new memory costs more time than the values that fill it. The old contents of `into` are lost, even
    /// if this throws.
    void columns(const Selection& selection, Columns& into) const;

    /// The same block by block, in order, for recordings larger than memory. `onBlock` gets at most `most` samples at a
    /// time, which are valid during the call. Reading ends when it returns false.
    void columns(const Selection& selection, std::size_t most,
                 const std::function<bool(const Columns&)>& onBlock) const;

    /// Writes the recording as a pair of files, or as one. Opening what was written in the form of the standard gives
    /// the same header and values and no finding.
    ///
    /// For a part (`Form::selection`), the start becomes the date of its first sample, with as many digits as the dates
    /// of the recording have. End samples count within the part. The trigger stays, even if it is then outside.
    ///
    /// Returns what the form could not hold: nothing, unless the form changes the revision or the data type. Throws as
    /// `columns` does, and `std::invalid_argument` for a form that does not exist or a part without channels or
    /// samples.
    Losses write(const Sink& cfg, const Sink& dat, const Form& form = {}) const;

private:
    explicit Opened(std::shared_ptr<const Recording> recording);
    friend struct Opening;

    std::shared_ptr<const Recording> _recording;
};

} // namespace OrvComtradeIntake
