#pragma once

#include "support/EmfBuilder.h"

#include <QString>

#include <vector>

namespace svgtool::test {

// Bodies of EMF records whose parameters are not all 32 bits wide.

/// A font: its height, escapement and face name, and no more of the record than that.
inline QByteArray font(quint32 index, int height, const char *faceName, int escapement = 0,
                       int charSet = 0)
{
    ByteWriter body;
    body.u32s({ index, height, 0, escapement, 0, 0 }).u16(0);
    body.bytes(QByteArray(1, '\0')).bytes(QByteArray(1, char(charSet))).u32(0);
    for (const char *letter = faceName; *letter != '\0'; ++letter)
        body.u16(*letter);
    return body.result();
}

/// A text record: 16-bit characters behind the fixed part, and behind them the advances.
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
        body.u32(x).u32(y).u32(count >= 0 ? count : qint64(text.size())).u32(textAt).u32(options);
        for (const int edge : rect)
            body.u32(edge);
        body.u32(advances.empty() ? 0 : advancesAt);
        for (const QChar unit : text)
            body.u16(unit.unicode());
        if (text.size() % 2 != 0)
            body.u16(0);
        for (const int advance : advances)
            body.u32(advance);
        return body.result();
    }
};

/// A small text record; @p characters are as wide as @p options says.
inline QByteArray smallText(int x, int y, quint32 count, quint32 options,
                            const QByteArray &characters)
{
    ByteWriter body;
    body.u32s({ x, y, count, options, 1 }).f32(1).f32(1);
    if ((options & 0x100) == 0)
        body.u32s({ 0, 0, 0, 0 });
    return body.bytes(characters).result();
}

} // namespace svgtool::test
