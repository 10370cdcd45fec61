#pragma once

#include "support/ByteWriter.h"

#include <vector>

namespace svgtool::test {

/// An EMF byte by byte. As it stands its device has one pixel a millimetre, and its frame gives a
/// document of 100 by 50 whose origin is 0,0, so that coordinates map to themselves.
struct EmfBuilder
{
    std::vector<int> bounds = { 0, 0, 100, 50 };
    std::vector<int> frame = { 0, 0, 10000, 5000 };
    int handles = 1; ///< slots of the object table, the first of which is none
    std::vector<int> device = { 1000, 1000, 1000, 1000 }; ///< in pixels and in millimetres
    quint32 headerType = 1;
    qint64 recordCount = -1; ///< in the header, in place of the right one
    QByteArray headerExtra = {}; ///< between the fixed header and the records
    QByteArray records = {};
    int count = 0; ///< of the records
    bool hasEnd = true;

    EmfBuilder &raw(const QByteArray &bytes)
    {
        records += bytes;
        ++count;
        return *this;
    }
    EmfBuilder &record(quint32 type, const QByteArray &body)
    {
        return raw(ByteWriter().u32(type).u32(8 + body.size()).bytes(body).result());
    }
    /// A record of 32-bit parameters.
    EmfBuilder &record(quint32 type, std::initializer_list<qint64> words = {})
    {
        return record(type, ByteWriter().u32s(words).result());
    }

    QByteArray build() const
    {
        const auto end = ByteWriter().u32s({ 14, 20, 0, 16, 20 }).result().left(hasEnd ? 20 : 0);
        const auto headerSize = 88 + headerExtra.size();
        ByteWriter header;
        header.u32(headerType).u32(headerSize).u32s(bounds).u32s(frame);
        header.u32s({ 0x464D4520, 0x10000, headerSize + records.size() + end.size() });
        header.u32(recordCount >= 0 ? recordCount : 1 + count + (hasEnd ? 1 : 0));
        header.u32s({ handles, 0, 0, 0 }).u32s(device);
        return header.result() + headerExtra + records + end;
    }
};

/// A text record's body: 16-bit characters behind the fixed part, and behind them the advances.
struct TextRecord
{
    int x, y;
    QString text;
    quint32 options = 0;
    std::vector<int> advances = {};
    std::vector<int> rect = { 0, 0, 0, 0 };
    qint64 count = -1; ///< in place of the right one

    QByteArray body() const
    {
        const qint64 textAt = 76;
        const qint64 advancesAt = textAt + (text.size() * 2 + 3) / 4 * 4;
        ByteWriter body;
        body.u32s({ 0, 0, 0, 0, 1 }).f32(1).f32(1);
        body.u32s({ x, y, count >= 0 ? count : qint64(text.size()), textAt, options }).u32s(rect);
        body.u32(advances.empty() ? 0 : advancesAt);
        for (const QChar unit : text)
            body.u16(unit.unicode());
        if (text.size() % 2 != 0)
            body.u16(0);
        return body.u32s(advances).result();
    }
};

} // namespace svgtool::test
