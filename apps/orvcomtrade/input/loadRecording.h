#pragma once

#include "input/Entry.h"
#include "input/LoadOptions.h"
#include "input/Recording.h"

#include <string>

/// Opens the recording of an entry, which must not be an unopened archive. If it cannot be read, it has a problem.
Recording openRecording(const Entry& entry, const LoadOptions& options);

/// The same. If the recording cannot be read, throws a Failure that names the file and what is wrong.
Recording loadRecording(const Entry& entry, const LoadOptions& options);
