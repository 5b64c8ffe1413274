#include "BinaryChannelConfig.h"

#include "../util/splitInto.h"
#include "StringHelper.h"
#include "channelLine.h"

#include <cstddef>
#include <string_view>

namespace OrvComtradeLib {

namespace {

/// A field that the line lacks is empty.
std::string_view fieldOf(const FieldViews& fields, std::size_t number) {
    return number < fields.size() ? fields[number] : std::string_view();
}

} // namespace

BinaryChannelConfig::BinaryChannelConfig() = default;

BinaryChannelConfig::BinaryChannelConfig(int position, const std::string& line, int revisionYear) {
    loadFields(*this, position, firstFields(line, kStatusFields), revisionYear);
}

BinaryChannelConfig::~BinaryChannelConfig() = default;

std::string BinaryChannelConfig::channelInfo() const {
    // Deliberate: the 0-based position once more, and not the normal state.
    return StringHelper::join(',', {BaseChannelConfig::channelInfo(), std::to_string(index)});
}

void BinaryChannelConfig::load(int position, const std::vector<std::string>& fields, int revisionYear) {
    loadFields(*this, position, viewsOf(fields), revisionYear);
}

void BinaryChannelConfig::loadExtValues(const std::vector<std::string>& fields, int revisionYear) {
    loadExtFields(*this, viewsOf(fields), revisionYear);
}

void loadFields(BinaryChannelConfig& record, int position, const FieldViews& fields, int revisionYear) {
    loadFields(record, position, fields);
    loadExtFields(record, fields, revisionYear);
}

void loadExtFields(BinaryChannelConfig& record, const FieldViews& fields, int revisionYear) {
    if (revisionYear > 1998) {
        record.phase = fieldOf(fields, 2);
        record.circuitComponent = fieldOf(fields, 3);
        record.normalState = fields.size() > 4 ? std::stoi(std::string(fields[4])) : 0;
        return;
    }
    record.normalState = std::stoi(std::string(fields.at(2)));
    record.circuitComponent.clear();
    record.phase.clear();
}

} // namespace OrvComtradeLib
