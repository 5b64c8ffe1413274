#pragma once

#include "input/Entry.h"
#include "input/LoadOptions.h"
#include "input/Recording.h"

#include <string>

/// Opens the recording that an entry stands for, which no archive does. One that can't be read has a problem.
Recording openRecording(const Entry& entry, const LoadOptions& options);

/// The same; a Failure that names the file and what is wrong with it where it can't be read.
Recording loadRecording(const Entry& entry, const LoadOptions& options);
