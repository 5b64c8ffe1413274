#pragma once

#include <string>

/// Throws a Failure unless the file is a catalogue of a version that this program knows.
void requireKnownCatalogue(const std::string& path);
