#pragma once

/// @file
/// Written by hand, so that `include/` and the folder of `OrvCommon.h` on the include path are all that a host needs.

#if defined(__GNUC__)
/// Marks what the shared library exports; everything else stays hidden.
#define ORVCOMTRADE_API __attribute__((visibility("default")))
#else
#define ORVCOMTRADE_API
#endif
