#pragma once

#include <OrvComtradeIntake/Header.h>

#include <string>

/// Display name of an analog channel whose values are in this unit, as the library has it: identifier, phase, circuit
/// component and unit.
std::string analogName(const OrvComtradeIntake::AnalogInfo& channel, const std::string& unit);

/// Display name of a status channel, as the library has it: identifier and circuit component.
std::string statusName(const OrvComtradeIntake::StatusInfo& channel);
