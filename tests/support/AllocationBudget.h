#pragma once

// Replaces the global allocation functions of the program that includes this header, which one of its source files
// may do. The replacement serves the shared libraries of the program as well. Not for programs with threads. Nothing
// is inlined: a compiler that sees one side only takes the pair for mismatched.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>

namespace orvtest {

/// What the program has allocated. Bytes are those that the allocator set aside, not those asked for.
struct AllocationCounts {
    std::size_t allocations = 0;
    std::size_t bytes = 0; ///< of all allocations together
    std::size_t live = 0;  ///< of those not freed yet
    std::size_t peak = 0;  ///< largest `live` since a meter began
};

enum class Failing { Once, FromThenOn };

namespace detail {

inline AllocationCounts counts;
inline std::size_t allowed = std::numeric_limits<std::size_t>::max();
inline std::size_t failures = 0;
inline Failing failing = Failing::Once;

inline bool mustFail() {
    if (allowed == std::numeric_limits<std::size_t>::max()) {
        return false;
    }
    if (allowed != 0) {
        --allowed;
        return false;
    }
    ++failures;
    errno = ENOMEM; // as malloc has it
    if (failing == Failing::Once) {
        allowed = std::numeric_limits<std::size_t>::max();
    }
    return true;
}

inline void* counted(void* memory) {
    if (memory != nullptr) {
        const std::size_t size = malloc_usable_size(memory);
        ++counts.allocations;
        counts.bytes += size;
        counts.live += size;
        counts.peak = std::max(counts.peak, counts.live);
    }
    return memory;
}

inline void* allocate(std::size_t size) {
    return mustFail() ? nullptr : counted(std::malloc(size == 0 ? 1 : size));
}

inline void* allocateAligned(std::size_t size, std::align_val_t alignment) {
    const auto step = static_cast<std::size_t>(alignment);
    return mustFail() ? nullptr : counted(std::aligned_alloc(step, (size + step - 1) / step * step));
}

inline void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

inline void release(void* memory) {
    if (memory != nullptr) {
        counts.live -= malloc_usable_size(memory);
        std::free(memory);
    }
}

} // namespace detail

inline const AllocationCounts& allocationCounts() {
    return detail::counts;
}

/// While it lives, a number of allocations succeed; then the next one fails, or all that follow.
class AllocationBudget {
public:
    AllocationBudget(std::size_t allocations, Failing failing) {
        detail::failures = 0;
        detail::failing = failing;
        detail::allowed = allocations;
    }
    ~AllocationBudget() { detail::allowed = std::numeric_limits<std::size_t>::max(); }
    AllocationBudget(const AllocationBudget&) = delete;
    AllocationBudget& operator=(const AllocationBudget&) = delete;

    /// Whether an allocation has failed.
    bool exceeded() const { return detail::failures != 0; }
};

/// Measures the allocations since its construction.
class AllocationMeter {
public:
    AllocationMeter() : _before(detail::counts) { detail::counts.peak = detail::counts.live; }

    std::size_t allocations() const { return detail::counts.allocations - _before.allocations; }
    std::size_t bytes() const { return detail::counts.bytes - _before.bytes; }
    std::size_t peak() const { return detail::counts.peak - _before.live; }

private:
    AllocationCounts _before;
};

} // namespace orvtest

[[gnu::noinline]] void* operator new(std::size_t size) {
    return orvtest::detail::orThrow(orvtest::detail::allocate(size));
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
    return orvtest::detail::orThrow(orvtest::detail::allocate(size));
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return orvtest::detail::allocate(size);
}
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return orvtest::detail::allocate(size);
}
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t alignment) {
    return orvtest::detail::orThrow(orvtest::detail::allocateAligned(size, alignment));
}
[[gnu::noinline]] void* operator new[](std::size_t size, std::align_val_t alignment) {
    return orvtest::detail::orThrow(orvtest::detail::allocateAligned(size, alignment));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    orvtest::detail::release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    orvtest::detail::release(memory);
}
