#pragma once

#include <OrvComtradeIntake/Header.h>
#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>
#include <vector>

/// Which recordings of many are asked for. Each wish that is made must be granted; one that is a list is granted by any
/// of its patterns.
struct RecordingFilter {
    std::vector<std::string> stations; ///< parts of the name, or patterns with `*` and `?`
    std::vector<std::string> channels; ///< names or identifiers, or patterns
    std::optional<OrvComtradeIntake::Instant> after;
    std::optional<OrvComtradeIntake::Instant> before; ///< this instant itself is left out

    bool isEmpty() const;
    bool isWanted(const OrvComtradeIntake::Header& header) const;

    /// What is to be known without the channels.
    bool isWanted(const std::string& station, const std::optional<OrvComtradeIntake::Instant>& start) const;

    /// Whether one channel of this name or identifier is what a wish for channels needs.
    bool isWantedChannel(const std::string& name, const std::string& id) const;
};
