#pragma once

#include "input/Recording.h"
#include "output/json.h"

#include <cstddef>
#include <optional>

/// Position from 1, display name, identifier, phase and component of an analog channel.
Json analogNameValue(const OrvComtradeIntake::AnalogInfo& channel, std::size_t position);

/// All that is recorded of an analog channel, and unit and side of the values that the tool gives of it, as an object.
/// Times are in seconds.
Json analogChannelValue(const Recording& recording, std::size_t position);

/// All that is recorded of a status channel.
Json statusChannelValue(const OrvComtradeIntake::StatusInfo& channel, std::size_t position);

/// All that is recorded but the channels and the texts beside them; the duration, in seconds, if it is known.
void setRecorded(Json& line, const OrvComtradeIntake::Header& header, std::optional<double> duration);

/// Start, trigger, and what is known of the clock.
void setTimes(Json& line, const OrvComtradeIntake::Header& header);

/// The sampling rates and the last samples that they are for.
Json ratesValue(const OrvComtradeIntake::Header& header);
