#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <nanobind/nanobind.h>
#include <string>

/// Hands the interactive page of a recording, piece by piece, to `write`.
void writePageTo(const OrvComtradeIntake::Opened& opened, const nanobind::callable& write, const std::string& name,
                 const std::string& verdict, const std::string& program);
