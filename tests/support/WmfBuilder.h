#pragma once

#include "support/ByteWriter.h"

#include <initializer_list>

namespace svgtool::test {

/// Builds a WMF byte by byte, without the placeable header unless asked for it.
class WmfBuilder
{
public:
    using Words = std::initializer_list<int>;

    WmfBuilder &placeable(int left, int top, int right, int bottom, int inch)
    {
        return set(m_placeable,
                   ByteWriter()
                           .u32(0x9AC6CDD7)
                           .u16s({ 0, left, top, right, bottom, inch })
                           .u32(0)
                           .u16(0)
                           .result());
    }
    WmfBuilder &headerSize(int words) { return set(m_headerSize, words); }
    WmfBuilder &members(int count) { return set(m_members, count); }
    /// The header's length of the file, in place of the right one.
    WmfBuilder &size(qint64 words) { return set(m_size, words); }
    WmfBuilder &maxRecord(qint64 words) { return set(m_maxRecord, words); }
    WmfBuilder &withoutEnd() { return set(m_hasEnd, false); }
    WmfBuilder &raw(const QByteArray &bytes)
    {
        m_records += bytes;
        return *this;
    }
    WmfBuilder &record(int function, const QByteArray &body)
    {
        return raw(ByteWriter().u32((6 + body.size()) / 2).u16(function).bytes(body).result());
    }
    /// A record of 16-bit parameters, in the order of the file.
    WmfBuilder &record(int function, Words words = {})
    {
        return record(function, ByteWriter().u16s(words).result());
    }

    QByteArray build() const
    {
        QByteArray records = m_records;
        if (m_hasEnd)
            records += ByteWriter().u32(3).u16(0).result();
        ByteWriter header;
        header.u16s({ 1, m_headerSize, 0x300 });
        header.u32(m_size >= 0 ? m_size : (18 + records.size()) / 2);
        header.u16(0).u32(m_maxRecord).u16(m_members);
        return m_placeable + header.result() + records;
    }

private:
    template<class Member>
    WmfBuilder &set(Member &member, const Member &value)
    {
        member = value;
        return *this;
    }

    QByteArray m_placeable;
    QByteArray m_records;
    int m_headerSize = 9;
    int m_members = 0;
    qint64 m_size = -1;
    qint64 m_maxRecord = 1000;
    bool m_hasEnd = true;
};

} // namespace svgtool::test
