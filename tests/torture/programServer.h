#pragma once

#include "torture/failingCalls.h"

// The preloaded library stops a program before the first instruction of its own, constructors of its static data
// included, and runs it again and again in children, each by a plan. So neither the program is loaded for every run,
// nor does anything fail that the dynamic loader does before the program begins.
namespace orvtest {

/// Names the descriptor of the shared memory and that of the requests, "7,8".
constexpr const char* kServerVariable = "ORVTEST_FAILING_CALLS";

/// A run that takes longer is ended by SIGALRM.
constexpr unsigned int kMostSeconds = 20;

/// A Plan comes as a request; the status of the child, as wait(2) has it, goes back.
using Reply = int;

} // namespace orvtest
