#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeLib {

class AnalogChannelConfig;
class BaseChannelConfig;
class BinaryChannelConfig;

/// Fields of a channel line, the channel number included (IEEE C37.111-1999, 5.3.3 and 5.3.4).
constexpr std::size_t kAnalogFieldsWithoutRatio = 10; ///< channel number to max
constexpr std::size_t kAnalogFields = 13;             ///< and primary, secondary, P or S
constexpr std::size_t kStatusFields = 5;              ///< channel number to normal state

using FieldViews = std::vector<std::string_view>;

/// The `load` and `loadExtValues` of the records, from fields that are still part of their line: a `.cfg` may have
/// thousands of channels, and texts of their own for every field would cost more than all else.
void loadFields(BaseChannelConfig& record, int position, const FieldViews& fields);
void loadFields(AnalogChannelConfig& record, int position, const FieldViews& fields, int revisionYear);
void loadFields(BinaryChannelConfig& record, int position, const FieldViews& fields, int revisionYear);
void loadExtFields(AnalogChannelConfig& record, const FieldViews& fields, int revisionYear);
void loadExtFields(BinaryChannelConfig& record, const FieldViews& fields, int revisionYear);

inline FieldViews viewsOf(const std::vector<std::string>& fields) {
    return {fields.begin(), fields.end()};
}

} // namespace OrvComtradeLib
