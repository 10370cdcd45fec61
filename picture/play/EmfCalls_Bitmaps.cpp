#include "picture/play/EmfCalls.h"

namespace svgtool::picture::emf {

namespace {

    // Where a bitmap lies in its record: header with colour table, and bits.
    struct DibRange
    {
        uint32_t info = 0, infoBytes = 0, bits = 0, bitsBytes = 0;
        uint32_t usage = 0;

        bool isEmpty() const { return infoBytes == 0; }
    };

    void takeRange(Fields &fields, DibRange &range)
    {
        range.info = fields.dword();
        range.infoBytes = fields.dword();
        range.bits = fields.dword();
        range.bitsBytes = fields.dword();
    }

    // None, which cannot be decoded, unless all of it is there.
    DibBytes dibOf(ByteView record, const DibRange &range)
    {
        const auto info = slice(record, range.info, range.infoBytes);
        const auto bits = slice(record, range.bits, range.bitsBytes);
        if (!info || !bits)
            return {};
        return { *info, *bits, range.usage };
    }

    BlitBox takeBlitBox(Fields &fields)
    {
        const PointL at = takePair(fields);
        return { at, takePair(fields) };
    }

    // What BITBLT and those like it begin with.
    struct Blt
    {
        BlitBox to;
        uint32_t operation = 0;
        PointL sourceAt;
        Affine toPixels;
        DibRange range;
    };

    Blt takeBlt(Fields &fields)
    {
        Blt blt;
        blt.to = takeBlitBox(fields);
        blt.operation = fields.dword();
        blt.sourceAt = takePair(fields);
        blt.toPixels = takeAffine(fields);
        if (!blt.toPixels.isFinite() || blt.toPixels.determinant() == 0)
            blt.toPixels = {}; // never filled in
        fields.skip(4); // the background of sources without colours
        blt.range.usage = fields.dword();
        takeRange(fields, blt.range);
        return blt;
    }

} // namespace

Played bitBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const Blt blt = takeBlt(fields);
    const BlitSource source{ dibOf(record, blt.range),
                             { blt.sourceAt, blt.to.extent },
                             blt.toPixels };
    return dc.stretchBlt(blt.to, blt.range.isEmpty() ? nullptr : &source, blt.operation);
}

Played stretchBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const Blt blt = takeBlt(fields);
    const BlitSource source{ dibOf(record, blt.range),
                             { blt.sourceAt, takePair(fields) },
                             blt.toPixels };
    return dc.stretchBlt(blt.to, blt.range.isEmpty() ? nullptr : &source, blt.operation);
}

Played setDibitsToDevice(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const PointL to = takePair(fields);
    const BlitBox from = takeBlitBox(fields);
    DibRange range;
    takeRange(fields, range);
    range.usage = fields.dword();
    const uint32_t firstLine = fields.dword();
    return dc.setDibitsToDevice(to, from, dibOf(record, range), firstLine, fields.dword());
}

Played stretchDibits(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    BlitBox to;
    to.at = takePair(fields);
    const BlitBox from = takeBlitBox(fields);
    DibRange range;
    takeRange(fields, range);
    range.usage = fields.dword();
    const uint32_t operation = fields.dword();
    to.extent = takePair(fields);
    return dc.stretchDibits(to, from, dibOf(record, range), operation);
}

} // namespace svgtool::picture::emf
