#pragma once

#include <OrvComtradeIntake/Columns.h>

#include <nanobind/nanobind.h>

/// Columns as a dict of read-only arrays that keep them alive: `first` (int), `time` (samples), `analog` (channels x
/// samples), `a`, `b` (channels), the changes of all status channels one after the other as `change_samples` and
/// `change_states`, `change_ends` (for each status channel the index after its last change), and `missing` (runs x 3:
/// column, sample, count).
nanobind::dict columnsObject(OrvComtradeIntake::Columns&& columns);
