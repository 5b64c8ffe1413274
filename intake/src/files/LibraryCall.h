#pragma once

#include <string>

namespace OrvComtradeIntake {

/// Around a call of the library, which has one code for damage, lack of memory and a read error: errno tells them
/// apart.
class LibraryCall {
public:
    /// The call is about to begin.
    LibraryCall();

    /// The call has ended. Throws `std::bad_alloc` or a FileError where a call of the system failed in it; where it
    /// `succeeded`, only for what makes a stream end early without a word: lack of memory and read errors.
    void check(bool succeeded, const std::string& file) const;
};

} // namespace OrvComtradeIntake
