#pragma once

#include "core/base/Bytes.h"

#include <QByteArray>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace svgtool::fuzz {

/// Decisions that are taken from an input, byte by byte, for metafiles that are made up of sound
/// records. Once the input is used up all are zero.
class Choices
{
public:
    Choices(const uint8_t *data, size_t size)
        : m_left{ reinterpret_cast<const char *>(data), int64_t(size) }
    {
    }

    bool isEmpty() const { return m_left.size == 0; }

    /// 0 to limit - 1, for limits up to 65,536.
    uint32_t below(uint32_t limit)
    {
        const uint32_t low = byte();
        return (limit > 256 ? byte() << 8 | low : low) % limit;
    }
    /// A byte below @p low, and one below @p high above it.
    uint32_t word(uint32_t low, uint32_t high)
    {
        const uint32_t first = below(low); // compilers order operands as they like
        return first | below(high) << 8;
    }
    bool oneIn(uint32_t n) { return below(n) == 0; }

    /// Mostly a coordinate within a small picture or near it, at times any number.
    int32_t number()
    {
        const uint32_t first = byte();
        if (first < 0xF0)
            return int32_t(first) - 64;
        const uint32_t high = below(1 << 16);
        return int32_t(high << 16 | below(1 << 16));
    }
    /// A number of 32 bits as any float, or a small one.
    float real()
    {
        const uint32_t first = byte();
        if (first < 0xF0)
            return (float(first) - 64) / 16;
        const uint32_t high = below(1 << 16);
        return std::bit_cast<float>(high << 16 | below(1 << 16));
    }
    /// Exactly so many bytes.
    QByteArray bytes(int count)
    {
        const auto taken = int(std::min<int64_t>(count, m_left.size));
        const QByteArray bytes(m_left.data, taken);
        m_left = tail(m_left, taken);
        return bytes.leftJustified(count, '\0');
    }
    template<class Value, size_t n>
    Value one(const Value (&values)[n])
    {
        return values[below(uint32_t(n))];
    }

private:
    uint32_t byte()
    {
        const auto first = readPadded<uint8_t>(m_left);
        m_left = tail(m_left, std::min<int64_t>(1, m_left.size));
        return first;
    }

    ByteView m_left;
};

} // namespace svgtool::fuzz
