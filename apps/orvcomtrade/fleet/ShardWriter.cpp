#include "fleet/ShardWriter.h"

#include "fleet/shardLines.h"

#include <utility>

ShardWriter::ShardWriter(std::string target, std::string header, const ShardReader* old)
    : _target(std::move(target)), _header(std::move(header)), _old(old), _files(true) {
    if (_old == nullptr || _old->header() != _header) {
        _begin();
    }
}

void ShardWriter::keep(std::string_view line) {
    if (_file == nullptr) {
        ++_kept;
    } else {
        _write(line);
        ++_recordings;
    }
}

void ShardWriter::add(std::string_view line) {
    _begin();
    _write(line);
    ++_recordings;
}

void ShardWriter::drop() {
    _begin();
}

void ShardWriter::finish() {
    if (_file != nullptr) {
        const std::string end = shardEnd(_recordings, _digest);
        _write(end);
        _files.publish();
    }
}

/// What was the same up to here is copied.
void ShardWriter::_begin() {
    if (_file != nullptr) {
        return;
    }
    makeFolderOf(_target);
    _file = &_files.add(_target);
    _write(_header);
    if (_kept > 0) {
        ShardReader kept(_old->path());
        for (; _recordings < _kept && kept.next(); ++_recordings) {
            _write(kept.line());
        }
    }
}

void ShardWriter::_write(std::string_view line) {
    _file->write(line);
    _file->put('\n');
    _digest.add(line);
    _digest.add("\n");
}
