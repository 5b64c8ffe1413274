#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace OrvComtradeIntake {

/// Allocator of a vector that is resized first and filled afterwards. New elements without an initial value stay unset:
/// setting a large block to zero costs as much as filling it.
template <class Value> class UnsetAllocator {
public:
    using value_type = Value; // NOLINT(readability-identifier-naming): the standard's name

    UnsetAllocator() = default;
    template <class Other>
    UnsetAllocator(const UnsetAllocator<Other>& /*other*/) noexcept {} // NOLINT(google-explicit-constructor)

    Value* allocate(std::size_t count) { return std::allocator<Value>().allocate(count); }
    void deallocate(Value* block, std::size_t count) noexcept { std::allocator<Value>().deallocate(block, count); }

    template <class Element> void construct(Element* place) { ::new (static_cast<void*>(place)) Element; }
    template <class Element, class... Arguments> void construct(Element* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) Element(std::forward<Arguments>(arguments)...);
    }
};

template <class One, class Other>
bool operator==(const UnsetAllocator<One>& /*one*/, const UnsetAllocator<Other>& /*other*/) noexcept {
    return true;
}

template <class One, class Other>
bool operator!=(const UnsetAllocator<One>& /*one*/, const UnsetAllocator<Other>& /*other*/) noexcept {
    return false;
}

} // namespace OrvComtradeIntake
