#pragma once

#include <cstdint>

namespace svgtool {

/// Width and height in whole units, such as pixels.
struct IntSize
{
    int32_t width = 0;
    int32_t height = 0;

    constexpr bool operator==(const IntSize &) const = default;
};

/// Columns [x, x + width) of the lines [y, y + height), with y downward.
struct IntRect
{
    int32_t x = 0;
    int32_t y = 0;
    int32_t width = 0;
    int32_t height = 0;

    constexpr bool operator==(const IntRect &) const = default;
};

} // namespace svgtool
