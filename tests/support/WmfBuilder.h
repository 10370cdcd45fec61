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
        m_placeable = ByteWriter()
                              .u32(0x9AC6CDD7)
                              .u16s({ 0, left, top, right, bottom, inch })
                              .u32(0)
                              .u16(0)
                              .result();
        return *this;
    }
    WmfBuilder &headerSize(int words)
    {
        m_headerSize = words;
        return *this;
    }
    WmfBuilder &members(int count)
    {
        m_members = count;
        return *this;
    }
    /// The header's length of the file, in place of the right one.
    WmfBuilder &size(qint64 words)
    {
        m_size = words;
        return *this;
    }
    WmfBuilder &maxRecord(qint64 words)
    {
        m_maxRecord = words;
        return *this;
    }
    WmfBuilder &withoutEnd()
    {
        m_hasEnd = false;
        return *this;
    }
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
        ByteWriter body;
        for (const int word : words)
            body.u16(word);
        return record(function, body.result());
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
    QByteArray m_placeable;
    QByteArray m_records;
    int m_headerSize = 9;
    int m_members = 0;
    qint64 m_size = -1;
    qint64 m_maxRecord = 1000;
    bool m_hasEnd = true;
};

} // namespace svgtool::test
