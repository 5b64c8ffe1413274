// Preloaded, this tries to open the file ORVCOMTRADE_TRY, for reading, whenever a program starts a thread, and says on
// standard error how that went.

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): those of the header are reserved
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*work)(void*),
                              void* argument) {
    const char* const path = std::getenv("ORVCOMTRADE_TRY"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    const int file = path == nullptr ? -1 : open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        std::perror("outside");
    } else {
        std::fputs("outside: opened\n", stderr);
        close(file);
    }
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create")); // NOLINT: how it is found
    return create(thread, attributes, work, argument);
}
