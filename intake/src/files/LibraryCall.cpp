#include "files/LibraryCall.h"

#include "files/FileError.h"

#include <cerrno>

namespace OrvComtradeIntake {

LibraryCall::LibraryCall() {
    errno = 0;
}

void LibraryCall::check(bool succeeded, const std::string& file) const {
    const int error = errno;
    const bool isOfNumbers = error == ERANGE || error == EINVAL || error == EILSEQ;
    if (error == ENOMEM || error == EIO || (!succeeded && error != 0 && !isOfNumbers)) {
        throwFileError(error, file);
    }
}

} // namespace OrvComtradeIntake
