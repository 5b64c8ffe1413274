#pragma once

#include <nanobind/nanobind.h>

/// The classes Folders and Opened, the functions that make one, and `interpolated`.
void addOpenedClass(nanobind::module_& module);
