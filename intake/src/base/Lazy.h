#pragma once

#include <mutex>
#include <optional>

namespace OrvComtradeIntake {

/// A value that is made when it is first asked for, by whichever thread asks first. Where making it throws, the next
/// one who asks tries again. Not `std::call_once`: what an exception needs on its way through the C library may be
/// memory, and the program ends where there is none.
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
