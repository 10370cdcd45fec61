#include "core/records/EmfPlusParts.h"

#include <algorithm>
#include <span>

namespace svgtool::plus {

// BrushDataFlags, [MS-EMFPLUS] 2.1.2.1.
enum BrushData : uint32_t {
    kPath = 1,
    kTransform = 2,
    kPresetColors = 4,
    kBlendFactorsH = 8,
    kBlendFactorsV = 0x10,
    kFocusScales = 0x40,
    kIsGammaCorrected = 0x80,
};

static HatchBrush readHatchBrush(PlusFields &fields)
{
    constexpr uint32_t kLastStyle = 52;
    HatchBrush brush;
    const uint32_t style = fields.dword();
    if (style > kLastStyle)
        fields.fail();
    brush.style = uint8_t(std::min(style, kLastStyle));
    brush.foreColor = fields.dword();
    brush.backColor = fields.dword();
    return brush;
}

static TextureBrush readTextureBrush(PlusFields &fields)
{
    TextureBrush brush;
    const uint32_t flags = fields.dword();
    brush.wrapMode = fields.choice(WrapMode::Clamp, WrapMode::Tile);
    if ((flags & kTransform) != 0)
        brush.transform = fields.matrix();
    if (fields.rest().size > kVersionBytes) {
        fields.skip(kVersionBytes);
        brush.image = std::make_shared<const Image>(readImage(fields));
    }
    return brush;
}

// Positions that fall make no sense.
template<class Stop, class Value>
static std::vector<Stop> stopsOf(std::span<const double> positions, std::span<const Value> values,
                                 PlusFields &fields)
{
    std::vector<Stop> stops;
    if (!std::ranges::is_sorted(positions))
        fields.fail();
    stops.reserve(values.size());
    for (size_t i = 0; i < values.size() && i < positions.size(); ++i)
        stops.push_back({ positions[i], values[i] });
    return stops;
}

static std::vector<BlendColor> readBlendColors(PlusFields &fields)
{
    const uint32_t count = fields.dword();
    const auto positions = fields.reals(count);
    const auto colors = fields.dwords(count);
    return stopsOf<BlendColor, uint32_t>(positions, colors, fields);
}

static std::vector<BlendFactor> readBlendFactors(PlusFields &fields)
{
    const uint32_t count = fields.dword();
    const auto positions = fields.reals(count);
    const auto factors = fields.reals(count);
    return stopsOf<BlendFactor, double>(positions, factors, fields);
}

static LinearGradientBrush readLinearGradient(PlusFields &fields)
{
    LinearGradientBrush brush;
    const uint32_t flags = fields.dword();
    brush.wrapMode = fields.choice(WrapMode::Clamp, WrapMode::Tile);
    brush.box = fields.rect();
    if (brush.box.right < brush.box.left || brush.box.bottom < brush.box.top)
        fields.fail();
    brush.startColor = fields.dword();
    brush.endColor = fields.dword();
    fields.skip(8); // reserved
    if ((flags & kTransform) != 0)
        brush.transform = fields.matrix();
    if ((flags & kPresetColors) != 0) {
        brush.colors = readBlendColors(fields);
    } else {
        if ((flags & kBlendFactorsH) != 0)
            brush.factors = readBlendFactors(fields);
        if ((flags & kBlendFactorsV) != 0)
            brush.verticalFactors = readBlendFactors(fields);
    }
    brush.isGammaCorrected = (flags & kIsGammaCorrected) != 0;
    return brush;
}

static PathObject readPolygon(PlusFields &fields)
{
    const uint32_t count = fields.dword();
    PathObject polygon;
    bool isFirst = true;
    for (const PointD point : fields.points(count, PlusFields::PointForm::Real)) {
        if (isFirst)
            polygon.outline.moveTo(point);
        else
            polygon.outline.lineTo(point);
        isFirst = false;
    }
    if (!isFirst)
        polygon.outline.close();
    return polygon;
}

static PathGradientBrush readPathGradient(PlusFields &fields)
{
    PathGradientBrush brush;
    const uint32_t flags = fields.dword();
    brush.wrapMode = fields.choice(WrapMode::Clamp, WrapMode::Tile);
    brush.centerColor = fields.dword();
    brush.center = fields.point();
    brush.surroundColors = fields.dwords(fields.dword());
    brush.boundary = (flags & kPath) != 0 ? readSizedPath(fields) : readPolygon(fields);
    if ((flags & kTransform) != 0)
        brush.transform = fields.matrix();
    if ((flags & kPresetColors) != 0)
        brush.colors = readBlendColors(fields);
    else if ((flags & kBlendFactorsH) != 0)
        brush.factors = readBlendFactors(fields);
    if ((flags & kFocusScales) != 0) {
        fields.skip(4); // their number, 2
        brush.focusScales = fields.point();
    }
    brush.isGammaCorrected = (flags & kIsGammaCorrected) != 0;
    return brush;
}

Brush readBrush(PlusFields &fields)
{
    enum : uint32_t { Solid, Hatch, Texture, PathGradient, LinearGradient };
    switch (fields.dword()) {
    case Solid:
        return SolidBrush{ fields.dword() };
    case Hatch:
        return readHatchBrush(fields);
    case Texture:
        return readTextureBrush(fields);
    case PathGradient:
        return readPathGradient(fields);
    case LinearGradient:
        return readLinearGradient(fields);
    default:
        fields.fail();
        return {};
    }
}

} // namespace svgtool::plus
