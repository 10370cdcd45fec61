#include "picture/svg/Numbers.h"

#include "core/base/ByteOrder.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

namespace svgtool::picture {

namespace {

    constexpr int kWord = 8; // digits

    // The eight digits of a number, the first in the lowest byte. It is halved three times, all
    // parts at once: hi and lo half of four digits, then quarters of two, then digits.
    uint64_t digitsOf(uint32_t number)
    {
        const uint64_t halves = number / 10000 | uint64_t(number % 10000) << 32;
        // By 100, and by 10, with products that are exact as far as these numbers go.
        const uint64_t hundreds = ((halves * 10486) >> 20) & 0x0000007F0000007F;
        const uint64_t quarters = hundreds | (halves - hundreds * 100) << 16;
        const uint64_t tens = ((quarters * 103) >> 10) & 0x000F000F000F000F;
        return tens | (quarters - tens * 10) << 8;
    }

    // Copies eight characters; those that count come first.
    void store(char *out, uint64_t characters)
    {
        const uint64_t bytes = fromLittleEndian(characters);
        std::memcpy(out, &bytes, sizeof bytes);
    }

} // namespace

char *Numbers::put(char *out, int64_t steps, bool &hasPoint) const
{
    *out = '-';
    out += steps < 0 ? 1 : 0;
    const uint64_t number = steps < 0 ? uint64_t(-steps) : uint64_t(steps);
    constexpr uint64_t kMost = 100'000'000;
    if (number >= kMost || m_decimals >= kWord)
        return putLong(out, number, hasPoint);
    hasPoint = false;
    if (number == 0) {
        *out = '0';
        return out + 1;
    }
    const uint64_t digits = digitsOf(uint32_t(number));
    const uint64_t characters = digits + 0x3030303030303030;
    // Less than kWord anyhow, as one of the digits is not 0.
    const int first = std::countr_zero(digits) / kWord % kWord;
    const int end = kWord - std::countl_zero(digits) / kWord;
    const int point = kWord - m_decimals;
    store(out, characters >> (8 * first));
    out += std::max(point - first, 0);
    if (end <= point)
        return out;
    hasPoint = true;
    *out = '.';
    store(out + 1, characters >> (8 * point));
    return out + 1 + (end - point);
}

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
