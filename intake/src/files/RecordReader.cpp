#include "RecordReader.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kBlockLength = 64UL * 1024; // stays in the second-level cache, and in memory used before

} // namespace

RecordReader::RecordReader(const DataSource& source, std::size_t recordLength)
    : _reader(source), _recordLength(recordLength),
      _blockLength(std::max<std::size_t>(kBlockLength / recordLength, 1) * recordLength),
      _block(new char[_blockLength]) {}

std::size_t RecordReader::next() {
    const std::size_t count = _reader.read(_block.get(), _blockLength);
    if (count / _recordLength == 0 || count < _blockLength) {
        _leftOver = count % _recordLength;
    }
    return count / _recordLength;
}

} // namespace OrvComtradeIntake
