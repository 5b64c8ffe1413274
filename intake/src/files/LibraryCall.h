#pragma once

#include <string>

namespace OrvComtradeIntake {

/// Distinguishes by errno why a load of the library failed. The library has one code for damage, lack of memory and a
/// read error. Construct it just before the call.
class LibraryCall {
public:
    LibraryCall();

    /// To be called just after the call. Throws `std::bad_alloc` or a FileError if a call of the system failed in it.
    /// If the load `succeeded`, it throws only for what makes a stream end early in silence: lack of memory and read
    /// errors.
    void check(bool succeeded, const std::string& file) const;
};

} // namespace OrvComtradeIntake
