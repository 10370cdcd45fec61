#include "picture/play/EmfCalls.h"

namespace svgtool::picture::emf {

DibBytes dibOf(ByteView record, const DibRange &range)
{
    const auto info = slice(record, range.info, range.infoBytes);
    if (!info || range.bits > record.size)
        return {};
    // Of what the record is too short for the first lines are there.
    const ByteView bits = tail(record, range.bits);
    return { *info, slice(bits, 0, range.bitsBytes).value_or(bits), range.usage };
}

namespace {

    BlitBox takeBlitBox(Fields &fields)
    {
        const PointL at = takePair(fields);
        return { at, takePair(fields) };
    }

    // One of zeros was never filled in.
    Affine takeToPixels(Fields &fields)
    {
        const Affine matrix = takeAffine(fields);
        return matrix.isFinite() && matrix.determinant() != 0 ? matrix : Affine();
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
        blt.toPixels = takeToPixels(fields);
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

Played maskBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const Blt blt = takeBlt(fields);
    BlitMask mask;
    mask.at = takePair(fields);
    DibRange range;
    range.usage = fields.dword();
    takeRange(fields, range);
    mask.dib = dibOf(record, range);
    const BlitSource source{ dibOf(record, blt.range),
                             { blt.sourceAt, blt.to.extent },
                             blt.toPixels };
    return dc.maskBlt(blt.to, blt.range.isEmpty() ? nullptr : &source,
                      range.isEmpty() ? nullptr : &mask, blt.operation);
}

Played plgBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const PointL corners[] = { takePair(fields), takePair(fields), takePair(fields) };
    BlitSource source;
    source.box = takeBlitBox(fields);
    source.toPixels = takeToPixels(fields);
    fields.skip(4); // the background of sources without colours
    DibRange range, maskRange;
    range.usage = fields.dword();
    takeRange(fields, range);
    source.dib = dibOf(record, range);
    BlitMask mask;
    mask.at = takePair(fields);
    maskRange.usage = fields.dword();
    takeRange(fields, maskRange);
    mask.dib = dibOf(record, maskRange);
    return dc.plgBlt(corners, source, maskRange.isEmpty() ? nullptr : &mask);
}

Played transparentBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const Blt blt = takeBlt(fields);
    const BlitSource source{ dibOf(record, blt.range),
                             { blt.sourceAt, takePair(fields) },
                             blt.toPixels };
    return dc.transparentBlt(blt.to, source, dc.colorOfReference(blt.operation));
}

Played alphaBlend(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const Blt blt = takeBlt(fields);
    const BlitSource source{ dibOf(record, blt.range),
                             { blt.sourceAt, takePair(fields) },
                             blt.toPixels };
    // BLENDFUNCTION, [MS-EMF] 2.2.5: the constant alpha, and whether pixels have one.
    const auto constant = uint8_t(blt.operation >> 16);
    return dc.alphaBlend(blt.to, source, constant, (blt.operation >> 24 & 1) != 0);
}

Played gradientFill(DeviceContext &dc, ByteView record)
{
    constexpr int64_t kVertexBytes = 16; // TRIVERTEX, [MS-EMF] 2.2.26
    constexpr uint32_t kTriangles = 2;
    Fields fields(record, kBody + kBounds);
    const int64_t count = fields.dword(), figures = fields.dword();
    const uint32_t mode = fields.dword();
    const int64_t corners = figures * (mode == kTriangles ? 3 : 2);
    if (!slice(record, fields.offset(), count * kVertexBytes)
        || !slice(record, fields.offset() + count * kVertexBytes, corners * 4))
        return notDone("it names more points than it has");
    std::vector<GradientVertex> vertices;
    vertices.reserve(size_t(count));
    for (int64_t i = 0; i < count; ++i) {
        GradientVertex vertex;
        vertex.at = takePair(fields);
        for (double &channel : vertex.channels)
            channel = fields.word() / 256.0;
        fields.skip(2); // alpha, which is not looked at
        vertices.push_back(vertex);
    }
    std::vector<uint32_t> indices;
    indices.reserve(size_t(corners));
    for (int64_t i = 0; i < corners; ++i)
        indices.push_back(fields.dword());
    return dc.gradientFill(vertices, indices, mode);
}

static Played createPatternBrush(DeviceContext &dc, ByteView record, bool isMono)
{
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    DibRange range;
    range.usage = fields.dword();
    takeRange(fields, range);
    const auto brush = dc.patternBrush({ dibOf(record, range), {} }, isMono);
    return brush ? dc.createObject(handle, *brush) : notDone("its bitmap makes no sense");
}

Played createMonoBrush(DeviceContext &dc, ByteView record)
{
    return createPatternBrush(dc, record, true);
}

Played createDibBrush(DeviceContext &dc, ByteView record)
{
    return createPatternBrush(dc, record, false);
}

} // namespace svgtool::picture::emf
