#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// Shows files in the programs that the system has for them (`xdg-open`). It is a process of its own, begun before this
/// one gives up its rights, and never reads a recording.
class Opener {
public:
    Opener() = default;
    ~Opener();
    Opener(const Opener&) = delete;
    Opener& operator=(const Opener&) = delete;
    Opener(Opener&&) = delete;
    Opener& operator=(Opener&&) = delete;

    /// Before `confine`, and before any thread. Throws a Failure.
    void begin();

    /// Shows the files. Gives a sentence why it could not, or nothing.
    std::string open(const std::vector<std::string>& files);

private:
    pid_t _process = -1;
    int _pipe = -1;
};
