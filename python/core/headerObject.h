#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <nanobind/nanobind.h>

/// What a configuration records, as a dict of plain objects; instants are nanoseconds since 1970, sides "recorded",
/// "primary" or "secondary". `given_side` and `base_unit` of an analog channel are those of the values.
nanobind::dict headerObject(const OrvComtradeIntake::Opened& opened);

/// Findings as tuples, in the order of the fields of the Python class.
nanobind::list findingsObject(const OrvComtradeIntake::Opened& opened);
