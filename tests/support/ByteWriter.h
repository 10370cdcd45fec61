#pragma once

#include <QByteArray>

#include <cstring>
#include <initializer_list>

namespace svgtool::test {

/// Appends little-endian numbers to a byte array.
class ByteWriter
{
public:
    ByteWriter &u16(int value)
    {
        m_bytes.append(char(value & 0xFF)).append(char((value >> 8) & 0xFF));
        return *this;
    }
    ByteWriter &u32(qint64 value)
    {
        return u16(int(value & 0xFFFF)).u16(int((value >> 16) & 0xFFFF));
    }
    /// Many numbers of 16 or 32 bits at once.
    ByteWriter &u16s(std::initializer_list<int> values)
    {
        for (const int value : values)
            u16(value);
        return *this;
    }
    ByteWriter &u32s(std::initializer_list<qint64> values)
    {
        for (const qint64 value : values)
            u32(value);
        return *this;
    }
    ByteWriter &f32(float value)
    {
        quint32 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return u32(bits);
    }
    ByteWriter &bytes(const QByteArray &value)
    {
        m_bytes.append(value);
        return *this;
    }
    const QByteArray &result() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

} // namespace svgtool::test
