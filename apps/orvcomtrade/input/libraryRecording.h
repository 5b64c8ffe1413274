#pragma once

#include "input/Recording.h"

#include <string>

/// Opens a recording with the library alone, which reads the files as they are.
Recording libraryRecording(const std::string& path);
