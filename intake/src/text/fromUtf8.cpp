#include "text/fromUtf8.h"

#include "base/utf8.h"
#include "text/Iconv.h"

namespace OrvComtradeIntake {

std::string fromUtf8(std::string_view text, const std::string& encoding) {
    bool isDamaged = false;
    return Iconv("UTF-8", encoding).convert(text, "?", utf8Length, isDamaged);
}

} // namespace OrvComtradeIntake
