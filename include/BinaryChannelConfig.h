#pragma once

#include "BaseChannelConfig.h"
#include "OrvComtradeExport.h"

#include <string>
#include <vector>

namespace OrvComtradeLib {

/// One status channel line of a `.cfg` (IEEE C37.111-1999, 5.3.4; the shorter line of 1991 as well).
class ORVCOMTRADE_API BinaryChannelConfig : public BaseChannelConfig {
public:
    /// A record of defaults: index 0, texts empty, normal state 0.
    BinaryChannelConfig();

    /// Parses a channel line (UTF-8, fields at commas) as load does, and throws as it does.
    BinaryChannelConfig(int position, const std::string& line, int revisionYear);

    ~BinaryChannelConfig() override;

    /// One-line description: the base's, then the 0-based position.
    std::string channelInfo() const override;

    /// Takes everything from the fields of a channel line, and `index` from the 0-based `position`. Throws
    /// `std::out_of_range` for fewer than two fields (three before revision 1999), and `std::invalid_argument` or
    /// `std::out_of_range` ("stoi") for a normal state that does not convert.
    void load(int position, const std::vector<std::string>& fields, int revisionYear) override;

    /// Takes phase, circuit component and normal state by the layout of the revision; throws as load does.
    void loadExtValues(const std::vector<std::string>& fields, int revisionYear);

    int normalState = 0; ///< state of the input while the primary device is in its steady state: 0 or 1, not checked
};

} // namespace OrvComtradeLib
