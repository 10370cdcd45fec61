#include "picture/play/EmfCalls.h"

namespace svgtool::picture::emf {

Played setTextJustification(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointL pair = takePair(fields);
    return dc.setTextJustification(pair.x, pair.y);
}

Played createPalette(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    fields.skip(2); // the version
    const auto palette = takePalette(record, fields, fields.word());
    return palette ? dc.createObject(handle, std::make_shared<Palette>(*palette)) : kTooFewEntries;
}

Played setPaletteEntries(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword(), first = fields.dword(), count = fields.dword();
    const auto palette = takePalette(record, fields, count);
    return palette ? dc.setPaletteEntries(handle, first, *palette) : kTooFewEntries;
}

Played resizePalette(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    return dc.resizePalette(handle, fields.dword());
}

// Numerator and denominator of x, then those of y.
template<auto Call>
static Played scale(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointL x = takePair(fields), y = takePair(fields);
    return (dc.*Call)({ x.x, y.x }, { x.y, y.y });
}

Played scaleWindowExtent(DeviceContext &dc, ByteView record)
{
    return scale<&DeviceContext::scaleWindowExtent>(dc, record);
}

Played scaleViewportExtent(DeviceContext &dc, ByteView record)
{
    return scale<&DeviceContext::scaleViewportExtent>(dc, record);
}

Played setWorldTransform(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return dc.setWorldTransform(takeAffine(fields));
}

Played modifyWorldTransform(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const Affine matrix = takeAffine(fields);
    return dc.modifyWorldTransform(matrix, fields.dword());
}

Played setMiterLimit(DeviceContext &dc, ByteView record)
{
    // Recorders write a whole number where the call takes a float.
    constexpr uint32_t kSmallestFloat = 0x00800000;
    const uint32_t bits = Fields(record, kBody).dword();
    return dc.setMiterLimit(bits >= kSmallestFloat ? double(std::bit_cast<float>(bits))
                                                   : double(bits));
}

std::optional<std::vector<RectI>> readRegion(ByteView record, int64_t offset, int64_t bytes)
{
    constexpr int64_t kHeader = 32, kRect = 16;
    const auto data = slice(record, offset, bytes);
    if (!data || data->size < kHeader)
        return std::nullopt;
    const int64_t count = Fields(*data, 8).dword();
    const auto rects = slice(*data, kHeader, count * kRect);
    if (!rects)
        return std::nullopt;
    std::vector<RectI> result;
    result.reserve(size_t(count));
    Fields fields(*rects);
    for (int64_t i = 0; i < count; ++i) {
        const PointL first = takePair(fields), second = takePair(fields);
        result.push_back({ first.x, first.y, second.x, second.y });
    }
    return result;
}

Played selectClipRegion(DeviceContext &dc, ByteView record)
{
    constexpr uint32_t kCopy = 5;
    Fields fields(record, kBody);
    const uint32_t bytes = fields.dword(), mode = fields.dword();
    if (bytes == 0 && mode == kCopy)
        return dc.resetClip();
    auto rects = readRegion(record, fields.offset(), bytes);
    auto region = rects ? Region::of(std::move(*rects)) : std::nullopt;
    return region ? dc.selectClipRegion(std::move(*region), mode)
                  : notDone("its region makes no sense");
}

} // namespace svgtool::picture::emf
