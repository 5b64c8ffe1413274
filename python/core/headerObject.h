#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <nanobind/nanobind.h>

/// What a configuration records, as a dict of plain objects. Instants are nanoseconds since 1970; sides are "recorded",
/// "primary" or "secondary". For an analog channel, `given_side` and `base_unit` are side and unit of the values.
nanobind::dict headerObject(const OrvComtradeIntake::Opened& opened);

/// Findings as tuples, in the order of the fields of the Python class.
nanobind::list findingsObject(const OrvComtradeIntake::Opened& opened);
