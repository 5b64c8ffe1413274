#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>

/// A bar on standard error that shows how many of the recordings are done. It appears once the work has taken a second,
/// and only if it is wanted and standard error is a terminal. Several threads may use it.
class Progress {
public:
    Progress(std::size_t total, bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    Progress(Progress&&) = delete;
    Progress& operator=(Progress&&) = delete;

    /// Draws the bar again.
    void show(std::size_t done);

    /// Removes the bar, and keeps it away as long as the lock is held.
    std::unique_lock<std::mutex> hide();

private:
    void _erase();

    const std::size_t _total;
    const bool _wanted;
    const std::chrono::steady_clock::time_point _begin = std::chrono::steady_clock::now();
    bool _shown = false;
    std::mutex _mutex;
};
