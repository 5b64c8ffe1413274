#pragma once

#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace orvtest {

/// A terminal for a stream of a program, and what the program wrote to it.
struct Terminal {
    int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);

    int slave() const {
        grantpt(master);
        unlockpt(master);
        return open(ptsname(master), O_RDWR | O_NOCTTY); // NOLINT(concurrency-mt-unsafe)
    }

    /// What stands there; waits for no more.
    std::string text() const {
        std::string all;
        pollfd one = {master, POLLIN, 0};
        while (poll(&one, 1, 0) > 0 && (one.revents & POLLIN) != 0) {
            char piece[512];
            const ssize_t count = read(master, piece, sizeof piece);
            if (count <= 0) {
                break;
            }
            all.append(piece, static_cast<std::size_t>(count));
        }
        return all;
    }
};

} // namespace orvtest
