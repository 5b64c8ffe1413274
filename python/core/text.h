#pragma once

#include <nanobind/nanobind.h>
#include <string>

/// A text of a recording as a str. Bytes that are not UTF-8 become U+FFFD.
inline nanobind::object textObject(const std::string& text) {
    return nanobind::steal(PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
}

/// A path as a str, decoded like os.fsdecode.
inline nanobind::object pathObject(const std::string& path) {
    return nanobind::steal(PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<Py_ssize_t>(path.size())));
}
