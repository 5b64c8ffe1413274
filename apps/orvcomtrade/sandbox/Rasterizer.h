#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <sys/types.h>

/// Makes PNG pictures from SVG with `rsvg-convert`. Another process runs it, which is started before this one gives up
/// its rights and never reads a recording. It makes one picture at a time.
class Rasterizer {
public:
    Rasterizer() = default;
    ~Rasterizer();
    Rasterizer(const Rasterizer&) = delete;
    Rasterizer& operator=(const Rasterizer&) = delete;
    Rasterizer(Rasterizer&&) = delete;
    Rasterizer& operator=(Rasterizer&&) = delete;

    /// Before `confine`, and before any thread. Throws a Failure, also if there is no such program.
    void begin();

    /// The picture as PNG. Several threads may call it. Throws a Failure.
    std::string png(std::string_view svg);

private:
    std::mutex _mutex;
    pid_t _process = -1;
    int _socket = -1;
};
