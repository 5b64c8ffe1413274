#include "openedClass.h"

#include <exception>
#include <nanobind/nanobind.h>
#include <system_error>

namespace nb = nanobind;

NB_MODULE(_core, module) {
    module.doc() = "The intake, for the Python side of the package alone.";
    // Not an OSError: its number is not always one of the system.
    static nb::exception<std::system_error> readError(module, "ReadError", PyExc_RuntimeError);
    addOpenedClass(module);
}
