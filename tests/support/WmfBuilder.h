#pragma once

#include "support/ByteWriter.h"

namespace svgtool::test {

/// A WMF byte by byte, without the placeable header unless asked for it.
struct WmfBuilder
{
    int headerSize = 9; ///< in words, as the two below
    qint64 size = -1; ///< in the header, in place of the right one
    qint64 maxRecord = 1000;
    int members = 0;
    QByteArray placeableHeader = {};
    QByteArray records = {};
    bool hasEnd = true;

    WmfBuilder &placeable(int left, int top, int right, int bottom, int inch)
    {
        ByteWriter header;
        header.u32(0x9AC6CDD7).u16s({ 0, left, top, right, bottom, inch }).u32(0).u16(0);
        placeableHeader = header.result();
        return *this;
    }
    WmfBuilder &raw(const QByteArray &bytes)
    {
        records += bytes;
        return *this;
    }
    WmfBuilder &record(quint32 function, const QByteArray &body)
    {
        return raw(ByteWriter().u32((6 + body.size()) / 2).u16(int(function)).bytes(body).result());
    }
    /// A record of 16-bit parameters, in the order of the file.
    WmfBuilder &record(quint32 function, std::initializer_list<int> words = {})
    {
        return record(function, ByteWriter().u16s(words).result());
    }

    QByteArray build() const
    {
        const QByteArray all = records + (hasEnd ? QByteArray("\3\0\0\0\0\0", 6) : QByteArray());
        ByteWriter header;
        header.u16s({ 1, headerSize, 0x300 }).u32(size >= 0 ? size : (18 + all.size()) / 2);
        header.u16(0).u32(maxRecord).u16(members);
        return placeableHeader + header.result() + all;
    }
};

} // namespace svgtool::test
