#pragma once

#include <cstdint>

namespace svgtool {

/// A colour as 0xAARRGGBB; its alpha says how opaque it is and has not been multiplied in.
using Argb = uint32_t;

constexpr Argb kColourBits = 0x00FFFFFF;
constexpr Argb kAlphaBits = 0xFF000000;
constexpr Argb kClear = 0;
constexpr Argb kBlack = kAlphaBits;
constexpr Argb kWhite = kAlphaBits | kColourBits;

/// @param red, green, blue, alpha  from 0 to 255
constexpr Argb argb(uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha = 255)
{
    return alpha << 24 | red << 16 | green << 8 | blue;
}

constexpr uint8_t alphaOf(Argb colour)
{
    return static_cast<uint8_t>(colour >> 24);
}

constexpr uint8_t redOf(Argb colour)
{
    return static_cast<uint8_t>(colour >> 16);
}

constexpr uint8_t greenOf(Argb colour)
{
    return static_cast<uint8_t>(colour >> 8);
}

constexpr uint8_t blueOf(Argb colour)
{
    return static_cast<uint8_t>(colour);
}

constexpr bool isGrey(Argb colour)
{
    return redOf(colour) == greenOf(colour) && greenOf(colour) == blueOf(colour);
}

constexpr bool isOpaque(Argb colour)
{
    return colour >= kAlphaBits;
}

} // namespace svgtool
