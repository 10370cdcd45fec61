#include "picture/svg/Numbers.h"

#include <charconv>
#include <cstring>

namespace svgtool::picture {

char *Numbers::putLong(char *out, uint64_t number, bool &hasPoint) const
{
    char *end = std::to_chars(out, out + kMostLength - 1, number).ptr;
    hasPoint = false;
    if (m_decimals == 0 || number == 0)
        return end;
    // Without decimals that are zero; then what is left of them goes back to make room for a point.
    int decimals = m_decimals;
    for (; decimals > 0 && end - out > 1 && end[-1] == '0'; --decimals)
        --end;
    if (decimals == 0)
        return end;
    hasPoint = true;
    const auto digits = int(end - out);
    const int zeros = decimals > digits ? decimals - digits : 0;
    char *const point = out + (digits > decimals ? digits - decimals : 0);
    std::memmove(point + 1 + zeros, point, size_t(end - point));
    *point = '.';
    std::memset(point + 1, '0', size_t(zeros));
    return end + 1 + zeros;
}

} // namespace svgtool::picture
