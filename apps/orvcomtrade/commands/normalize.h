#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <OrvComtradeIntake/Form.h>

#include <string>
#include <vector>

struct NormalizeRequest {
    OutputRequest output;
    OrvComtradeIntake::Form form;
};

/// Throws a Failure for what can't be done: values of one side in the standard's form, which keeps that of each
/// channel.
void checkNormalize(const Request& request, const NormalizeRequest& wanted);

/// What will be written of each recording, without extensions.
std::vector<std::string> normalizeTargets(const Request& request, const NormalizeRequest& wanted);

/// Writes the recording as a clean pair of files into a folder, and its header and information files beside them.
void normalizeRecording(const Entry& entry, const Request& request, const NormalizeRequest& wanted, Job& out);
