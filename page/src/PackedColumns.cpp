#include "PackedColumns.h"

#include <numeric>
#include <system_error>
#include <utility>

namespace OrvComtradePage {

namespace {

constexpr std::size_t kFewNumbers = 256UL * 1024; // packed in 2 ms: no thread is worth it

std::size_t numbersOf(const std::vector<ValueColumn>& columns) {
    return std::accumulate(columns.begin(), columns.end(), std::size_t{0},
                           [](std::size_t sum, const ValueColumn& column) { return sum + column.size(); });
}

} // namespace

PackedColumns::PackedColumns(const std::vector<ValueColumn>& columns, std::size_t threads)
    : _columns(columns), _threads(threads < 2 || numbersOf(columns) <= kFewNumbers ? 0 : threads) {}

Packed PackedColumns::next() {
    _packAhead();
    if (_ahead.empty()) {
        return _packer.pack(_columns.at(_begun++));
    }
    std::future<Packed> first = std::move(_ahead.front());
    _ahead.pop_front();
    return first.get();
}

void PackedColumns::_packAhead() {
    while (_ahead.size() < _threads && _begun < _columns.size()) {
        const ValueColumn& column = _columns[_begun];
        try {
            _ahead.push_back(std::async(std::launch::async, [&column] { return Packer().pack(column); }));
        } catch (const std::system_error&) { // the system's limit of threads
            return;
        }
        ++_begun;
    }
}

} // namespace OrvComtradePage
