#pragma once

#include "input/Recording.h"
#include "output/json.h"

#include <cstddef>
#include <optional>

/// Position from 1, display name, identifier, phase and component of an analog channel.
Json analogNameValue(const OrvComtradeIntake::AnalogInfo& channel, std::size_t position);

/// Everything that is recorded of an analog channel, and the unit and side of its values in the tool's output, as an
/// object. Times are in seconds.
Json analogChannelValue(const Recording& recording, std::size_t position);

/// Everything that is recorded of a status channel, as an object.
Json statusChannelValue(const OrvComtradeIntake::StatusInfo& channel, std::size_t position);

/// Sets members for everything recorded except the channels and the texts of `.hdr` and `.inf`, and the duration in
/// seconds, if it is known.
void setRecorded(Json& line, const OrvComtradeIntake::Header& header, std::optional<double> duration);

/// Sets members for start, trigger, and what is known of the clock.
void setTimes(Json& line, const OrvComtradeIntake::Header& header);

/// The sampling rates, each with the number of its last sample.
Json ratesValue(const OrvComtradeIntake::Header& header);
