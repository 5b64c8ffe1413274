#pragma once

#include <OrvComtradeIntake/Header.h>
#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>
#include <vector>

/// Conditions for the recordings that are wanted. All conditions that are set must hold; a list holds if any of its
/// patterns fits.
struct RecordingFilter {
    std::vector<std::string> stations; ///< parts of the name, or patterns with `*` and `?`
    std::vector<std::string> channels; ///< names or identifiers, or patterns
    std::optional<OrvComtradeIntake::Instant> after;
    std::optional<OrvComtradeIntake::Instant> before; ///< not included

    bool isEmpty() const;
    bool isWanted(const OrvComtradeIntake::Header& header) const;

    /// Whether all conditions hold that do not need the channels.
    bool isWanted(const std::string& station, const std::optional<OrvComtradeIntake::Instant>& start) const;

    /// Whether a channel of this name or identifier meets the condition for channels.
    bool isWantedChannel(const std::string& name, const std::string& id) const;
};
