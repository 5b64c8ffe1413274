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

/// What makes values in base units of what is recorded of an analog channel.
struct Scale {
    double a = 1.0; ///< value = raw * a + b, in that order and without fusing
    double b = 0.0;
    Side side = Side::Recorded; ///< of the values; Recorded where the line declares none
};

/// A recording that `open` has looked at. It keeps the configuration and handles of the files, not the samples; it
/// needs nothing on a disk, and leaves nothing behind. Moved, not copied. Its const members may be called from several
/// threads at once.
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

    /// Everything as recorded. Of a recording that is not readable: as far as it was understood.
    const Header& header() const;

    const std::string& cfgFile() const; ///< path of the configuration (or `.cff`) as found, or empty
    const std::string& datFile() const; ///< path of the data (or `.cff`) as found, or empty: configuration only

    /// Whether `Comtrade::load` of the path alone gives the same values, times and states as `load`: found by asking
    /// the library, not by a model of it. Throws `std::system_error` if the configuration has changed since `open` or
    /// can't be read any more.
    bool librarySuffices() const;

    /// Side of the values that `load` and `columns` give of an analog channel; Recorded where its line declares none.
    Side sideOf(std::size_t analogChannel) const;

    /// The scale of an analog channel on another side than that of the options; the raw values are those of `columns`.
    /// Its own side where that is asked for, or where the line has no side or no ratio that could be used.
    Scale scaleOf(std::size_t analogChannel, Side side) const;

    /// Unit of these values: that of the header without its prefix ("V" for "kV").
    std::string unitOf(std::size_t analogChannel) const;

    /// Fills the library's object, with values in base units on the side of the options: by the library itself where
    /// it reads the data rightly, else with what it would read of data written for it. Gives what `Comtrade::load`
    /// gives; `CfgLoadError` or `DatLoadError` for a recording that is not readable. Throws `std::bad_alloc` where
    /// memory runs out, also in the library, and `std::system_error` where there is no memory without a name for the
    /// configuration, a file can't be read, or the data have changed since `open`.
    int load(OrvComtradeLib::Comtrade& comtrade) const;

    /// The selected columns. Throws `std::out_of_range` for a channel that there is not, `std::logic_error` for a
    /// recording that is not readable, `std::system_error` if the data can't be read any more or have changed since
    /// `open`.
    Columns columns(const Selection& selection = {}) const;

    /// The same into columns whose storage is used again where it is large enough: the fastest way through many
    /// recordings, or many parts of one, since fresh memory costs more than the values that fill it. What `into` held
    /// is gone, also where this throws.
    void columns(const Selection& selection, Columns& into) const;

    /// The same block by block, in order, for recordings larger than memory: `onBlock` gets at most `most` samples at
    /// a time, valid during the call, and ends the reading by returning false.
    void columns(const Selection& selection, std::size_t most,
                 const std::function<bool(const Columns&)>& onBlock) const;

    /// Writes the recording as a pair of files, or as one. Opening what was written in the standard's form gives the
    /// same header and values and no finding. Of a part (`Form::selection`) the start is the date of its first sample,
    /// to the last digit that dates of the recording have; end samples are its own; the trigger stays, also where it
    /// is then found to be outside. Gives what the form could not hold: nothing, unless the revision or the data type
    /// is another one than recorded. Throws as `columns` does, and `std::invalid_argument` for a form that there is
    /// not, or a part without channels or samples.
    Losses write(const Sink& cfg, const Sink& dat, const Form& form = {}) const;

private:
    explicit Opened(std::shared_ptr<const Recording> recording);
    friend struct Opening;

    std::shared_ptr<const Recording> _recording;
};

} // namespace OrvComtradeIntake
