#pragma once

#include <QByteArray>
#include <QString>

#include <bit>
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
        return u16(int(value & 0xFFFF)).u16(int(value >> 16 & 0xFFFF));
    }
    ByteWriter &f32(float value) { return u32(std::bit_cast<quint32>(value)); }
    ByteWriter &bytes(const QByteArray &value)
    {
        m_bytes.append(value);
        return *this;
    }

    /// Many numbers of 16 or 32 bits at once.
    ByteWriter &u16s(std::initializer_list<int> values)
    {
        for (const int value : values)
            u16(value);
        return *this;
    }
    template<class Numbers = std::initializer_list<qint64>>
    ByteWriter &u32s(const Numbers &values)
    {
        for (const qint64 value : values)
            u32(value);
        return *this;
    }

    const QByteArray &result() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

} // namespace svgtool::test
