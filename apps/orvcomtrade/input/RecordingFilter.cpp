#include "input/RecordingFilter.h"

#include "input/chooseChannels.h"
#include "input/namePattern.h"

#include <algorithm>

using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;

bool RecordingFilter::isEmpty() const {
    return stations.empty() && channels.empty() && !after && !before;
}

bool RecordingFilter::isWanted(const Header& header) const {
    const auto hasChannel = [&header](const std::string& pattern) { return hasChannelLike(header, pattern); };
    return isWanted(header.station, header.start) &&
           (channels.empty() || std::any_of(channels.begin(), channels.end(), hasChannel));
}

bool RecordingFilter::isWanted(const std::string& station, const std::optional<Instant>& start) const {
    const auto isOfStation = [&station](const std::string& pattern) {
        const bool isPart = pattern.find_first_of("*?") == std::string::npos;
        return isLike(station, isPart ? "*" + pattern + "*" : pattern);
    };
    const bool isInTime = (!after || (start && start->nanoseconds >= after->nanoseconds)) &&
                          (!before || (start && start->nanoseconds < before->nanoseconds));
    return isInTime && (stations.empty() || std::any_of(stations.begin(), stations.end(), isOfStation));
}

bool RecordingFilter::isWantedChannel(const std::string& name, const std::string& id) const {
    return std::any_of(channels.begin(), channels.end(),
                       [&](const std::string& pattern) { return isLike(id, pattern) || isLike(name, pattern); });
}
