#pragma once

#include <OrvComtradeIntake/Header.h>

/// Seconds from the time of a sample to that of the channel's value; they are recorded in microseconds.
inline double skewSeconds(const OrvComtradeIntake::AnalogInfo& channel) {
    return channel.skew * 0.000001;
}
