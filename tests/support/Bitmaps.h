#pragma once

#include "support/EmfBuilder.h"

#include <QByteArray>

#include <string>

namespace svgtool::test {

/// A device-independent bitmap, its bits apart from its header and colour table.
struct Dib
{
    QByteArray info;
    QByteArray bits;
    int usage = 0;

    QByteArray packed() const { return info + bits; }
};

/// What a bitmap header says; @p rest is what follows it: masks and colour table.
struct DibHead
{
    qint64 width, height;
    int depth;
    int compression = 0;
    qint64 coloursUsed = 0;
    qint64 headerBytes = 40;

    QByteArray info(const QByteArray &rest = {}) const
    {
        ByteWriter head;
        if (headerBytes == 12)
            head.u32(12).u16(int(width)).u16(int(height)).u16(1).u16(depth);
        else
            head.u32s({ headerBytes, width, height })
                    .u16(1)
                    .u16(depth)
                    .u32s({ compression, 0, 0, 0, coloursUsed, 0 });
        return head.result() + rest;
    }
};

/// Four numbers of a rectangle: left, top, width and height.
struct Box
{
    qint64 x, y, width, height;
};

constexpr qint64 kSourceCopy = 0x00CC0020;

/// The body of an EMR_STRETCHDIBITS.
inline QByteArray stretchDib(const Dib &dib, Box to, Box from, qint64 rop = kSourceCopy)
{
    const qint64 infoAt = 80;
    const qint64 bitsAt = infoAt + dib.info.size();
    return ByteWriter()
            .u32s({ 0, 0, 0, 0, to.x, to.y, from.x, from.y, from.width, from.height })
            .u32s({ infoAt, dib.info.size(), bitsAt, dib.bits.size(), dib.usage, rop })
            .u32s({ to.width, to.height })
            .bytes(dib.packed())
            .result();
}

/// The body of a transfer from a device context; @p extra are the fields behind the common ones.
inline QByteArray blt(const Dib &dib, Box to, qint64 fromX, qint64 fromY, qint64 rop,
                      const QByteArray &extra = {}, const Dib &mask = {})
{
    const qint64 maskFields = mask.info.isEmpty() ? 0 : 20;
    const qint64 infoAt = 100 + extra.size() + maskFields;
    const qint64 bitsAt = infoAt + dib.info.size();
    const qint64 maskAt = bitsAt + dib.bits.size();
    ByteWriter body;
    body.u32s({ 0, 0, 0, 0, to.x, to.y, to.width, to.height, rop, fromX, fromY });
    body.f32(1).f32(0).f32(0).f32(1).f32(0).f32(0).u32(0).u32(dib.usage);
    if (dib.info.isEmpty())
        return body.u32s({ 0, 0, 0, 0 }).bytes(extra).result();
    body.u32s({ infoAt, dib.info.size(), bitsAt, dib.bits.size() }).bytes(extra);
    if (maskFields != 0)
        body.u32s({ 0, maskAt, mask.info.size(), maskAt + mask.info.size(), mask.bits.size() });
    return body.bytes(dib.packed()).bytes(mask.packed()).result();
}

/// @p svg with every picture in it decoded: in place of a PNG's data URL stand its pixels, lines
/// parted by "/", each as "rrggbb", "rrggbbaa" where it is translucent, and "......" where nothing
/// is to be seen.
std::string withPixels(std::string svg);

} // namespace svgtool::test
