#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace svgtool::fuzz {

/// A little-endian number anywhere in @p bytes; what lies outside reads as 0.
inline uint32_t numberAt(const std::string &bytes, size_t offset, size_t width)
{
    uint32_t value = 0;
    for (size_t i = 0; offset + width <= bytes.size() && i < width; ++i)
        value |= uint32_t(uint8_t(bytes[offset + i])) << (8 * i);
    return value;
}

/// Writes such a number, unless it lies outside.
inline void setNumberAt(std::string &bytes, size_t offset, size_t width, uint32_t value)
{
    for (size_t i = 0; offset + width <= bytes.size() && i < width; ++i)
        bytes[offset + i] = char(value >> (8 * i));
}

} // namespace svgtool::fuzz
