#pragma once

#include "Comtrade.h"

#include <string>

/// Loads the recording; a Failure that names the file looked for and the result code when that does not work.
void loadRecording(OrvComtradeLib::Comtrade& recording, const std::string& path);
