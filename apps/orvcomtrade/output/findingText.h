#pragma once

#include "output/json.h"

#include <OrvComtradeIntake/Finding.h>

#include <string>

/// Where it is: "file:line:field", or "file:byte 96:field" in binary data.
std::string placeText(const OrvComtradeIntake::Place& place);

/// "LF expected, found CR LF: read as LF (first of 22)": behind the colon how it was read nevertheless, or else what a
/// person can do about it.
std::string findingSentence(const OrvComtradeIntake::Finding& finding);

/// All of it on a line: "rec.cfg:1: warning: UTF-8 expected, found CP1251: converted to UTF-8 [encoding]". Where
/// `severity` is not empty, it stands in the place of the severity's name.
std::string findingLine(const OrvComtradeIntake::Finding& finding, const std::string& severity = {});

/// Everything that is known of it, as an object.
Json findingValue(const OrvComtradeIntake::Finding& finding);
