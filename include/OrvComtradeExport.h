#pragma once

/// @file
/// Written by hand: a host program needs nothing on its include path but `include/` and the folder of `OrvCommon.h`.

#if defined(__GNUC__)
/// Marks what the shared library exports; everything else stays hidden.
#define ORVCOMTRADE_API __attribute__((visibility("default")))
#else
#define ORVCOMTRADE_API
#endif
