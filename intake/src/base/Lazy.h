#pragma once

#include <mutex>
#include <optional>

namespace OrvComtradeIntake {

/// A value that is made when a thread first requests it. If making it throws, the next request tries again.
///
/// It does not use `std::call_once`: an exception on its way through the C library may need memory, and the program
/// ends if there is none.
template <class Value> class Lazy {
public:
    template <class Make> const Value& get(const Make& make) const {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (!_value) {
            _value.emplace(make());
        }
        return *_value;
    }

private:
    mutable std::mutex _mutex;
    mutable std::optional<Value> _value;
};

} // namespace OrvComtradeIntake
