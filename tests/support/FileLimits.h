#pragma once

#include <sys/resource.h>
#include <unistd.h>

namespace orvtest {

/// Lets no file be opened while it lives.
class NoFileHandles {
public:
    NoFileHandles() {
        getrlimit(RLIMIT_NOFILE, &_before);
        rlimit none = _before;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoFileHandles() { setrlimit(RLIMIT_NOFILE, &_before); }
    NoFileHandles(const NoFileHandles&) = delete;
    NoFileHandles& operator=(const NoFileHandles&) = delete;

private:
    rlimit _before{};
};

/// Ends the program when the test takes longer, rather than waiting on a pipe for ever.
class Deadline {
public:
    explicit Deadline(unsigned int seconds) { alarm(seconds); }
    ~Deadline() { alarm(0); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
};

} // namespace orvtest
