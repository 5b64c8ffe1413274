#pragma once

#include <cstdint>
#include <string>

/// Throws a Failure, or std::bad_alloc, unless this error of a look at a path says that nothing can be opened there
/// later either. Without its rule, what is there would be refused for another reason than the true one.
void requireAbsent(int error, const std::string& path);

/// What files the program may still open from some moment on, whatever the bytes that it reads make it do: Landlock of
/// Linux. Where the kernel has none (or the build did not know it) nothing is forbidden.
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

    /// A file, or a folder with all below it. What a link leads to counts. Nothing where there is no such thing; throws
    /// a Failure where the system has no means to look.
    void allowReading(const std::string& path) const;

    /// A folder with all below it; if it is still to be made, the deepest of the folders above it that is there.
    void allowWriting(const std::string& folder) const;

    /// From now on nothing else can be opened by this thread and those that it starts, no program gets more rights than
    /// this one, and no connection is made.
    void close() const;

private:
    void _allow(int place, const std::string& path, std::uint64_t rights) const;

    std::uint64_t _known = 0; ///< rights that this kernel knows
    const int _rules;
};
