#include "data/RecordReader.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kBlockLength = 64UL * 1024; // stays in the second-level cache, and in memory used before

} // namespace

RecordReader::RecordReader(const ByteSource& source, std::size_t stride)
    : _source(source), _stride(stride), _block(std::max<std::size_t>(kBlockLength / stride, 1) * stride) {}

std::size_t RecordReader::next() {
    const std::size_t records = _source.read(_position, _block.data(), _block.size()) / _stride;
    _position += records * _stride;
    return records;
}

} // namespace OrvComtradeIntake
