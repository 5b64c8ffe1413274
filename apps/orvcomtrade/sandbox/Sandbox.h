#pragma once

#include <cstdint>
#include <string>

/// Throws a Failure, or std::bad_alloc, unless `error` of a look at a path means that nothing can be opened there later
/// either. Otherwise the path would get no rule, and opening it would fail for another reason than the true one.
void requireAbsent(int error, const std::string& path);

/// Restricts the files that the program can open from some moment on, whatever the bytes that it reads make it do. Uses
/// Landlock of Linux. If the kernel does not have it, or the build did not know it, nothing is forbidden.
class Sandbox {
public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    Sandbox(Sandbox&&) = delete;
    Sandbox& operator=(Sandbox&&) = delete;

    /// Whether the kernel can forbid anything.
    bool isThere() const { return _rules >= 0; }

    /// Allows a file, or a folder with everything below it. Links are followed. Does nothing if the path does not
    /// exist; throws a Failure if the system cannot look.
    void allowReading(const std::string& path) const;

    /// Allows a folder with everything below it. If it does not exist yet, allows the deepest existing folder above it.
    void allowWriting(const std::string& folder) const;

    /// From now on, this thread and those that it starts can open nothing else and make no connection, and no program
    /// that they start gets more rights.
    void close() const;

private:
    void _allow(int place, const std::string& path, std::uint64_t rights) const;

    std::uint64_t _known = 0; ///< rights that this kernel knows
    const int _rules;
};
