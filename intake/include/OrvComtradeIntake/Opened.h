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

struct Recording; // of the intake's own

/// How values in base units follow from the recorded values of an analog channel.
struct Scale {
    double a = 1.0; ///< value = raw * a + b, in that order and without fusing
    double b = 0.0;
    Side side = Side::Recorded; ///< of the values; Recorded where the line declares none
};

/// A recording that `open` has examined. It keeps the configuration and handles of the files, not the samples. It
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

    /// Whether `Comtrade::load` of the path alone gives the same values, times and states as `load`. The library itself
    /// is asked, not a model of it. Throws `std::system_error` if the configuration has changed since `open` or can't
    /// be read any more.
    bool librarySuffices() const;

    /// Side of the values of an analog channel that `load` and `columns` give; Recorded if its line declares none.
    Side sideOf(std::size_t analogChannel) const;

    /// The scale of an analog channel on another side than that of the options; the raw values are those of `columns`.
    /// It is the scale of the channel's own side if that is asked for, or if the line has no side or no usable ratio.
    Scale scaleOf(std::size_t analogChannel, Side side) const;

    /// Unit of these values: that of the header without its prefix ("V" for "kV").
    std::string unitOf(std::size_t analogChannel) const;

    /// Fills the library's object with values in base units on the side of the options. The library reads the data
    /// itself if it reads them correctly; otherwise the object gets what the library would read from data written for
    /// it. Returns what `Comtrade::load` returns; `CfgLoadError` or `DatLoadError` for a recording that is not
    /// readable. Throws `std::bad_alloc` if memory runs out, also in the library. Throws `std::system_error` if there
    /// is no nameless memory for the configuration, a file cannot be read, or the data have changed since `open`.
    int load(OrvComtradeLib::Comtrade& comtrade) const;

    /// The selected columns. Throws `std::out_of_range` for a channel that does not exist, `std::logic_error` for a
    /// recording that is not readable, `std::system_error` if the data can't be read any more or have changed since
    /// `open`.
    Columns columns(const Selection& selection = {}) const;

    /// The same into columns whose storage is reused if it is large enough. This is the fastest way through many
    /// recordings, or many parts of one, since new memory costs more than the values that fill it. The old contents of
    /// `into` are lost, even if this throws.
    void columns(const Selection& selection, Columns& into) const;

    /// The same block by block, in order, for recordings larger than memory: `onBlock` gets at most `most` samples at
    /// a time, valid during the call, and ends the reading by returning false.
    void columns(const Selection& selection, std::size_t most,
                 const std::function<bool(const Columns&)>& onBlock) const;

    /// Writes the recording as a pair of files, or as one. Opening what was written in the form of the standard gives
    /// the same header and values and no finding. For a part (`Form::selection`), the start is the date of its first
    /// sample, to the last digit that dates of the recording have; end samples count within the part; the trigger
    /// stays, even if it is then outside. Returns what the form could not hold: nothing, unless the revision or the
    /// data type is not the one recorded. Throws as `columns` does, and `std::invalid_argument` for a form that does
    /// not exist, or a part without channels or samples.
    Losses write(const Sink& cfg, const Sink& dat, const Form& form = {}) const;

private:
    explicit Opened(std::shared_ptr<const Recording> recording);
    friend struct Opening;

    std::shared_ptr<const Recording> _recording;
};

} // namespace OrvComtradeIntake
