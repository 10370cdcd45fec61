#pragma once

#include "core/base/ByteOrder.h"
#include "core/base/Bytes.h"

#include <bit>
#include <cstdint>

namespace svgtool {

/// Takes a record's fields one after the other, little-endian on every machine. What the record is
/// too short for reads as zero.
class Fields
{
public:
    /// @param offset  of the first field; behind the end of the record there is none
    explicit Fields(ByteView record, int64_t offset = 0) : m_record(record), m_offset(offset) { }

    uint8_t byte() { return take<uint8_t>(); }
    uint16_t word() { return fromLittleEndian(take<uint16_t>()); }
    int16_t shortInt() { return int16_t(word()); }
    uint32_t dword() { return fromLittleEndian(take<uint32_t>()); }
    int32_t longInt() { return int32_t(dword()); }
    /// May be infinite or no number.
    float real() { return std::bit_cast<float>(dword()); }
    Fields &skip(int64_t bytes)
    {
        m_offset += bytes;
        return *this;
    }
    int64_t offset() const { return m_offset; }

private:
    template<class T>
    T take()
    {
        const T value = readPadded<T>(tail(m_record, m_offset));
        m_offset += int64_t(sizeof(T));
        return value;
    }

    ByteView m_record;
    int64_t m_offset;
};

} // namespace svgtool
