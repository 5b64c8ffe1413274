#pragma once

#include "output/json.h"

#include <OrvComtradeIntake/Finding.h>

#include <string>

/// Place of a finding: "file:line:field", or "file:byte 96:field" in binary data.
std::string placeText(const OrvComtradeIntake::Place& place);

/// "LF expected, found CR LF: read as LF (first of 22)". After the colon comes how it was read anyway, or else what a
/// person can do about it.
std::string findingSentence(const OrvComtradeIntake::Finding& finding);

/// A finding on one line: "rec.cfg:1: warning: UTF-8 expected, found CP1251: converted to UTF-8 [encoding]". If
/// `severity` is not empty, it replaces the severity's name.
std::string findingLine(const OrvComtradeIntake::Finding& finding, const std::string& severity = {});

/// All members of a finding, as an object.
Json findingValue(const OrvComtradeIntake::Finding& finding);
