#include "torture/programServer.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Main = int (*)(int, char**, char**);
using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);

/// Returns in each child; never in the server.
void serve(orvtest::Calls& calls, int requests) {
    orvtest::Plan plan;
    while (read(requests, &plan, sizeof plan) == static_cast<ssize_t>(sizeof plan)) {
        const pid_t child = fork();
        if (child == 0) {
            close(requests);
            alarm(orvtest::kMostSeconds);
            orvtest::failBy(plan, calls);
            return;
        }
        orvtest::Reply status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child ||
            write(requests, &status, sizeof status) != static_cast<ssize_t>(sizeof status)) {
            break;
        }
    }
    _exit(0);
}

} // namespace

// The first that the program itself calls. NOLINTNEXTLINE: the C library's name and types
extern "C" int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(), void (*loaderFini)(),
                                 void* stackEnd) {
    const auto start = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "__libc_start_main")); // NOLINT: as dlsym gives it
    const char* const descriptors = std::getenv(orvtest::kServerVariable);
    int memory = -1;
    int requests = -1;
    if (descriptors != nullptr && std::sscanf(descriptors, "%d,%d", &memory, &requests) == 2) {
        void* const calls = mmap(nullptr, sizeof(orvtest::Calls), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
        if (calls != MAP_FAILED) {
            close(memory);
            serve(*static_cast<orvtest::Calls*>(calls), requests);
        }
    }
    return start(main, argc, argv, init, fini, loaderFini, stackEnd);
}
