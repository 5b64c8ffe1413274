#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// Shows files in the programs that the system has for them (`xdg-open`). Another process does so, which is started
/// before this one gives up its rights and never reads a recording.
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

    /// Shows the files. Returns a sentence that says why it could not, or "".
    std::string open(const std::vector<std::string>& files);

private:
    pid_t _process = -1;
    int _pipe = -1;
};
