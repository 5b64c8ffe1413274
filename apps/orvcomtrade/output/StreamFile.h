#pragma once

#include "output/Output.h"

#include <string>

/// Whether a path leads to a descriptor of the program (/dev/fd/3, a link to /dev/stdout) or to a device such as a
/// terminal. A named pipe is neither: the program does not wait for its reader.
bool isStream(const std::string& path);

/// Writes directly to such a path. Throws a Failure, or ReaderGone.
class StreamFile : public Output {
public:
    explicit StreamFile(const std::string& path);
    ~StreamFile() override;
    StreamFile(const StreamFile&) = delete;
    StreamFile& operator=(const StreamFile&) = delete;
    StreamFile(StreamFile&&) = delete;
    StreamFile& operator=(StreamFile&&) = delete;

protected:
    void send(std::string_view piece) override;

private:
    const std::string _path;
    const int _file;
};
