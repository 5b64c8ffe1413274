#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace OrvComtradePage {

/// Values of one channel in the smallest type that holds all of them exactly: 16-bit integers, 32-bit integers,
/// singles, doubles. It starts with the smallest and is converted when a value needs a wider one.
class ValueColumn {
public:
    using Values =
        std::variant<std::vector<std::int16_t>, std::vector<std::int32_t>, std::vector<float>, std::vector<double>>;

    void append(const double* values, std::size_t count);

    std::size_t size() const;
    double at(std::size_t index) const;
    void set(std::size_t index, double value); ///< `value` must be one that the column already has
    const Values& values() const { return _values; }

private:
    Values _values;
};

} // namespace OrvComtradePage
