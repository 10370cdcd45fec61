#pragma once

#include "support/EmfBuilder.h"

#include <QString>

#include <vector>

namespace svgtool::test {

// Bodies of EMF records whose parameters are not all 32 bits wide.

using PointList = std::initializer_list<std::pair<int, int>>;

/// A list of points after an empty bounding box and their count, which may be given another value.
inline QByteArray pointList(PointList points, bool is16Bit = false, qint64 count = -1)
{
    ByteWriter body;
    body.u32s({ 0, 0, 0, 0 }).u32(count >= 0 ? count : qint64(points.size()));
    for (const auto &[x, y] : points)
        is16Bit ? body.u16(x).u16(y) : body.u32(x).u32(y);
    return body.result();
}

/// As pointList, in 16 bits.
inline QByteArray pointList16(PointList points)
{
    return pointList(points, true);
}

/// Figures that share out a list of points.
inline QByteArray figures(std::initializer_list<qint64> counts, PointList points,
                          bool is16Bit = false)
{
    ByteWriter body;
    body.u32s({ 0, 0, 0, 0 }).u32(qint64(counts.size())).u32(qint64(points.size()));
    for (const qint64 count : counts)
        body.u32(count);
    for (const auto &[x, y] : points)
        is16Bit ? body.u16(x).u16(y) : body.u32(x).u32(y);
    return body.result();
}

/// Six numbers of a transform, with the mode of a modification behind them where it has one.
inline QByteArray transform(std::initializer_list<float> numbers, int mode = 0)
{
    ByteWriter body;
    for (const float number : numbers)
        body.f32(number);
    if (mode != 0)
        body.u32(mode);
    return body.result();
}

inline QByteArray angleArc(int x, int y, quint32 radius, float start, float sweep)
{
    return ByteWriter().u32s({ x, y, radius }).f32(start).f32(sweep).result();
}

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
