#pragma once

#include "OrvComtradeExport.h"

#include <string>
#include <vector>

namespace OrvComtradeLib {

/// What the analog and the status channel lines of a `.cfg` have in common (IEEE C37.111-1999, 5.3.3 and 5.3.4).
/// A plain value; texts are UTF-8, kept as written with any blanks around them.
class ORVCOMTRADE_API BaseChannelConfig {
public:
    /// A record of defaults: index 0, texts empty.
    BaseChannelConfig();
    virtual ~BaseChannelConfig();

    /// Display name: channel identifier and circuit component, joined with a comma.
    virtual std::string name() const;

    /// One-line description: 1-based position, channel identifier, phase and circuit component, joined with commas.
    virtual std::string channelInfo() const;

    /// Takes `index` from the 0-based `position` and the channel identifier from the fields of a channel line;
    /// `revisionYear` (of the standard that the file follows) is for the derived records. Throws `std::out_of_range`
    /// for a line of fewer than two fields.
    virtual void load(int position, const std::vector<std::string>& fields, int revisionYear);

    int index = 0;                ///< 0-based position among the channels of its kind; not the number in the line
    std::string channelId;        ///< channel identifier
    std::string phase;            ///< phase identification
    std::string circuitComponent; ///< circuit component being monitored
};

} // namespace OrvComtradeLib
