#pragma once

#include "BaseChannelConfig.h"
#include "OrvComtradeExport.h"

#include <string>
#include <type_traits>
#include <vector>

namespace OrvComtradeLib {

/// One analog channel line of a `.cfg` (IEEE C37.111-1999, 5.3.3). After a parse, `a`, `b` and `unitMultiplier` yield
/// secondary values in base units (volts rather than kilovolts).
class ORVCOMTRADE_API AnalogChannelConfig : public BaseChannelConfig {
public:
    /// A record of defaults at the 0-based `position`, with the range of setMinMax.
    AnalogChannelConfig(int position, bool flag, int revisionYear);

    /// Parses a channel line (UTF-8, fields at commas) as load does, and throws as it does.
    AnalogChannelConfig(int position, const std::string& line, int revisionYear);

    /// The same for a string literal, which would otherwise become the `bool` of the first constructor. It is a
    /// template, so that 0 is still a flag.
    template <class Character, std::enable_if_t<std::is_same_v<Character, char>, int> = 0>
    AnalogChannelConfig(int position, const Character* line, int revisionYear)
        : AnalogChannelConfig(position, std::string(line), revisionYear) {}

    ~AnalogChannelConfig() override;

    /// Display name: channel identifier, phase, circuit component and unit, joined with commas.
    std::string name() const override;

    /// One-line description: the base's, then unit, a, b, skew (seconds), min, max, primary, secondary and "S" or "P".
    std::string channelInfo() const override;

    /// Takes everything from the fields of a channel line, and `index` from the 0-based `position`. Throws
    /// `std::out_of_range` for fewer than ten fields, and `std::invalid_argument` or `std::out_of_range` ("stod") for a
    /// number that does not convert. Members assigned before the error keep their new values.
    void load(int position, const std::vector<std::string>& fields, int revisionYear) override;

    /// Takes the transformer ratio and the side from fields 10 to 12 (revision 1999 and later) and converts `a` of a
    /// primary channel to the secondary side. Older or shorter lines count as secondary with ratio 1. Throws as load
    /// does.
    void loadExtValues(const std::vector<std::string>& fields, int revisionYear);

    /// Factor of the unit's prefix letter (m, k, K, M), or 1 for a unit without one.
    double multiplicator(std::string unitText);

    /// Presets the range: -32767 to 32767 for a 1999 file without `flag`, else -99999 to 99999.
    void setMinMax(bool flag, int revisionYear);

    /// Secondary value in base units of a raw sample: (raw * a + b) * unitMultiplier.
    double GetRealValue(const double& raw) const;

    std::string unit = "V";      ///< unit as written (kV, A, mA, ...)
    double unitMultiplier = 1.0; ///< factor of the unit's prefix letter: 0.001, 1, 1000 or 1000000
    double a = 1.0;              ///< channel multiplier, converted to the secondary side where the line says primary
    double b = 0.0;              ///< channel offset adder, as written
    double skew = 0.0;           ///< time skew in seconds (the line gives microseconds)
    double min = 0.0;            ///< lower end of the raw value range, as written; no value is checked against it
    double max = 0.0;            ///< upper end of the raw value range, as written
    double primary = 1.0;        ///< primary factor of the transformer ratio; may be 0
    double secondary = 1.0;      ///< secondary factor of the transformer ratio
    bool secondaryValues = true; ///< whether the line declares secondary values ("S"); values are secondary either way
};

} // namespace OrvComtradeLib
