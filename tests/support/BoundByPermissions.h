#pragma once

#include <array>
#include <linux/capability.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvtest {

/// While it lives, file permissions apply to this thread even if it runs as root.
class BoundByPermissions {
public:
    BoundByPermissions() {
        change(SYS_capget, _before);
        Sets bound = _before;
        bound[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        change(SYS_capset, bound);
    }
    ~BoundByPermissions() { syscall(SYS_capset, &_header, _before.data()); }
    BoundByPermissions(const BoundByPermissions&) = delete;
    BoundByPermissions& operator=(const BoundByPermissions&) = delete;

private:
    using Sets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

    void change(long call, Sets& sets) {
        if (syscall(call, &_header, sets.data()) != 0) {
            throw std::runtime_error("cannot change what this thread may do");
        }
    }

    __user_cap_header_struct _header{_LINUX_CAPABILITY_VERSION_3, 0};
    Sets _before{};
};

} // namespace orvtest
