#pragma once

#include <OrvComtradeIntake/Form.h>

#include <nanobind/nanobind.h>
#include <string_view>

/// A sink that passes blocks to a Python function, which must outlive it. Call the sink without the interpreter's lock.
inline OrvComtradeIntake::Sink sinkInto(const nanobind::callable& write) {
    return [&write](std::string_view bytes) {
        const nanobind::gil_scoped_acquire ours;
        write(nanobind::bytes(bytes.data(), bytes.size()));
    };
}
