#pragma once

#include <nanobind/nanobind.h>
#include <string>

/// A text of a recording: UTF-8, with U+FFFD where it is not.
inline nanobind::object textObject(const std::string& text) {
    return nanobind::steal(PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
}

/// A path as the system has it, as os.fsdecode gives it.
inline nanobind::object pathObject(const std::string& path) {
    return nanobind::steal(PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<Py_ssize_t>(path.size())));
}
