#pragma once

#include <cstdint>

// For programs that link failingReads.cpp, which stands in for pread.
namespace fuzz {

enum class ReadFailure {
    Error, ///< EIO
    Short  ///< after EINTR, one byte alone: no failure to who asks again
};

/// While it lives, one read of a file is disturbed: the one after `others` other reads.
class FailingRead {
public:
    FailingRead(std::uint64_t others, ReadFailure failure);
    ~FailingRead();
    FailingRead(const FailingRead&) = delete;
    FailingRead& operator=(const FailingRead&) = delete;
    FailingRead(FailingRead&&) = delete;
    FailingRead& operator=(FailingRead&&) = delete;
};

} // namespace fuzz
