#pragma once

#include <OrvComtradeIntake/Header.h>

#include <string>

/// Display name of an analog channel whose values are in this unit: identifier, phase, circuit component and unit.
/// Empty parts are left out.
std::string analogName(const OrvComtradeIntake::AnalogInfo& channel, const std::string& unit);

/// Display name of a status channel: identifier and circuit component. Empty parts are left out.
std::string statusName(const OrvComtradeIntake::StatusInfo& channel);
