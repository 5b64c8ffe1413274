#pragma once

#include <string>
#include <utility>

namespace OrvComtradeIntake {

/// Owns an open file descriptor. Moved, not copied.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : _number(number) {}
    ~Descriptor() { _close(); }
    Descriptor(Descriptor&& other) noexcept : _number(std::exchange(other._number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            _close();
            _number = std::exchange(other._number, -1);
        }
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return _number >= 0; }
    int number() const { return _number; }

    /// A path by which this process can open the same file again ("/proc/self/fd/7"); empty if the system has none.
    std::string path() const;

private:
    void _close() const;

    int _number = -1;
};

} // namespace OrvComtradeIntake
