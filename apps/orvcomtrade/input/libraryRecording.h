#pragma once

#include "input/Recording.h"

#include <string>

/// A recording as the library reads its files when they are given to it untouched.
Recording libraryRecording(const std::string& path);
