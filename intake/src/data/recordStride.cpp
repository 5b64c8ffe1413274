#include "recordStride.h"

#include "RecordReader.h"

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kMostPadding = 16;

/// Whether the numbers of the first records, at least two, go on.
bool numbersGoOn(const DataSource& source, std::size_t stride) {
    RecordReader reader(source, stride);
    const std::size_t count = reader.next();
    for (std::size_t i = 1; i < count; ++i) {
        if (littleEndian32(reader.records() + i * stride) != littleEndian32(reader.records()) + i) {
            return false;
        }
    }
    return count > 1;
}

} // namespace

std::size_t recordStride(const DataSource& source, const DataLayout& layout, std::uint64_t declared) {
    const std::size_t usual = layout.recordLength();
    const std::uint64_t length = dataLength(source);
    if (declared < 2 || length / usual <= declared || length % declared != 0) {
        return usual;
    }
    const std::uint64_t stride = length / declared;
    const bool isPadded = stride > usual && stride - usual <= kMostPadding;
    return isPadded && !numbersGoOn(source, usual) && numbersGoOn(source, stride) ? stride : usual;
}

} // namespace OrvComtradeIntake
