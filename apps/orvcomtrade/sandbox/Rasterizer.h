#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <sys/types.h>

/// Makes PNG pictures of SVG ones by `rsvg-convert`, which is asked for in a process of its own, begun before this one
/// gives up its rights: that process never reads a recording. One picture at a time.
class Rasterizer {
public:
    Rasterizer() = default;
    ~Rasterizer();
    Rasterizer(const Rasterizer&) = delete;
    Rasterizer& operator=(const Rasterizer&) = delete;
    Rasterizer(Rasterizer&&) = delete;
    Rasterizer& operator=(Rasterizer&&) = delete;

    /// Before `confine`, and before any thread. Throws a Failure, also where there is no such program.
    void begin();

    /// The picture as PNG. May be called by several threads. Throws a Failure.
    std::string png(std::string_view svg);

private:
    std::mutex _mutex;
    pid_t _process = -1;
    int _socket = -1;
};
