#pragma once

#include "input/LoadOptions.h"
#include "input/Recording.h"

#include <string>

/// Opens the recording that the path of any of its files names. One that can't be read has a problem.
Recording openRecording(const std::string& path, const LoadOptions& options);

/// The same; a Failure that names the file and what is wrong with it where it can't be read.
Recording loadRecording(const std::string& path, const LoadOptions& options);
