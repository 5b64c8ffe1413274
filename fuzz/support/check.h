#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process with a message when a property does not hold: what a fuzzer and the replay both take for a finding.
#define FUZZ_CHECK(condition)                                                                                          \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);                        \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)
