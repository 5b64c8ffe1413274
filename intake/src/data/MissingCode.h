#pragma once

#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Which number of ASCII data stands for a missing value: 99999 since 1999 (8.4); 999999 in 1991, where that number is
/// a value for channels whose range holds it.
class MissingCode {
public:
    static constexpr std::int64_t kUsual = 99999;
    static constexpr std::int64_t kOld = 999999;

    explicit MissingCode(const Header& header) : _number(header.revision < 1999 ? kOld : kUsual) {
        for (const AnalogInfo& channel : header.analog) {
            const auto code = static_cast<double>(kOld);
            _isValue.push_back(_number == kOld && channel.min < code && channel.max > code);
        }
    }

    bool isMissing(std::int64_t value, std::size_t channel) const { return value == _number && !_isValue[channel]; }

    std::int64_t number() const { return _number; }

private:
    std::int64_t _number;
    std::vector<bool> _isValue; ///< by channel
};

} // namespace OrvComtradeIntake
