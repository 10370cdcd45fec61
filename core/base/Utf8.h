#pragma once

#include <cstdint>

namespace svgtool {

/// The most bytes of UTF-8 that a UTF-16 unit becomes.
constexpr int64_t kUtf8PerUnit = 3;

/// Writes UTF-16 as UTF-8; unpaired surrogates become "?".
/// @param out    has room for kUtf8PerUnit bytes for each unit
/// @param units  of 16 bits, of whatever type
/// @return where the text ends
template<class Unit>
char *putUtf8(char *out, const Unit *units, int64_t size)
{
    static_assert(sizeof(Unit) == 2);
    // Nearly all texts are ASCII, which this is quicker for.
    char16_t seen = 0;
    for (int64_t i = 0; i < size; ++i) {
        seen = static_cast<char16_t>(seen | units[i]);
        out[i] = static_cast<char>(units[i]);
    }
    if (seen < 0x80)
        return out + size;
    const auto put = [&out](uint32_t bits) { *out++ = static_cast<char>(bits); };
    const auto putTail = [&put](uint32_t bits) { put(0x80 | (bits & 0x3F)); };
    const auto isIn = [units, size](int64_t at, uint32_t surrogates) {
        return at < size && (units[at] & 0xFC00U) == surrogates;
    };
    for (int64_t i = 0; i < size; ++i) {
        const auto unit = static_cast<uint32_t>(units[i]);
        if (unit < 0x80) {
            put(unit);
        } else if (unit < 0x800) {
            put(0xC0 | unit >> 6);
            putTail(unit);
        } else if ((unit & 0xF800) != 0xD800) {
            put(0xE0 | unit >> 12);
            putTail(unit >> 6);
            putTail(unit);
        } else if (isIn(i, 0xD800) && isIn(i + 1, 0xDC00)) {
            const uint32_t code = 0x10000 + ((unit & 0x3FF) << 10 | (units[++i] & 0x3FFU));
            put(0xF0 | code >> 18);
            putTail(code >> 12);
            putTail(code >> 6);
            putTail(code);
        } else {
            put('?');
        }
    }
    return out;
}

} // namespace svgtool
