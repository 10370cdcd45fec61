#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace svgtool {

/// A number as a metafile holds it, which is little-endian, in the host's byte order.
template<std::integral Number>
constexpr Number fromLittleEndian(Number value)
{
    if constexpr (std::endian::native == std::endian::little)
        return value;
    using Bits = std::make_unsigned_t<Number>;
    Bits swapped = 0;
    auto bits = static_cast<Bits>(value);
    for (std::size_t i = 0; i < sizeof value; ++i) {
        swapped = static_cast<Bits>(swapped << 8 | (bits & 0xFF));
        bits = static_cast<Bits>(bits >> 8);
    }
    return static_cast<Number>(swapped);
}

} // namespace svgtool
