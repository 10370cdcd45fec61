#include "picture/gdi/DeviceContext.h"

#include <cmath>
#include <utility>

// Brushes of bitmaps, and brushes as bitmaps where they are mixed with others.

namespace svgtool::picture {

std::optional<Brush> DeviceContext::patternBrush(const BlitSource &source, bool isMono)
{
    auto bitmap = decode(source);
    if (!bitmap || bitmap->isFile()) // which would go with its record
        return std::nullopt;
    Brush brush;
    brush.kind = Brush::Kind::Pattern;
    brush.isMono = isMono && bitmap->isMask();
    brush.pattern = std::make_shared<const DecodedBitmap>(std::move(*bitmap));
    return brush;
}

Index DeviceContext::brushImage(const Brush &brush)
{
    const ShownBrush shown{ brush.pattern, brush.isMono ? argbOf(m_state.textColor) : kClear,
                            brush.isMono ? argbOf(m_state.backgroundColor) : kClear };
    const auto known = m_brushImages.find(shown);
    if (known != m_brushImages.end())
        return known->second;
    // One costs no more than the record that made it; its colours change with a few bytes.
    if (brush.isMono && !spendPixels(brush.pattern->size))
        return kNone;
    Image image;
    image.pixels = brushTile(brush);
    image.size = image.pixels.size();
    const Index number = m_builder.image(std::move(image));
    m_brushesByImage.emplace(number, m_brushImages.try_emplace(shown, number).first);
    return number;
}

Paint DeviceContext::patternPaint(const Brush &brush)
{
    const double pixel = m_device.unitsPerPixel;
    const PointD origin{ m_device.view.left + m_state.brushOrigin.x * pixel,
                         m_device.view.top + m_state.brushOrigin.y * pixel };
    Pattern pattern;
    pattern.image = brushImage(brush);
    if (pattern.image == kNone) {
        m_shortfall = kTakenForOneColour;
        return { Paint::Kind::Solid, m_state.textColor, kNone };
    }
    const IntSize size = brush.pattern->size;
    pattern.tile = { origin.x, origin.y, origin.x + size.width * pixel,
                     origin.y + size.height * pixel };
    return { Paint::Kind::Pattern, {}, m_builder.pattern(pattern) };
}

// The pixels of a hatch, transparent where nothing lies under its lines.
static Bitmap hatchPixels(const Brush &brush, Argb ground)
{
    constexpr int32_t kSide = 8;
    const auto isLine = [style = brush.hatch](int32_t x, int32_t y) {
        const bool isRow = y == 3, isColumn = x == 4, isFalling = x == y, isRising = x + y == 7;
        const bool of[] = { isRow,    isColumn,          isFalling,
                            isRising, isRow || isColumn, isFalling || isRising };
        return of[style];
    };
    Bitmap tile(PixelFormat::Indexed8, { kSide, kSide });
    tile.colours() = { ground, argbOf(brush.color) };
    for (int32_t y = 0; y < kSide; ++y)
        for (int32_t x = 0; x < kSide; ++x)
            tile.line(y)[x] = isLine(x, y) ? 1 : 0;
    return tile;
}

Bitmap DeviceContext::brushTile(const Brush &brush) const
{
    if (brush.kind == Brush::Kind::Hatched)
        return hatchPixels(brush, m_state.isOpaque ? argbOf(m_state.backgroundColor) : kClear);
    Bitmap tile = brush.kind == Brush::Kind::Pattern ? brush.pattern->pixels : Bitmap();
    if (brush.isMono)
        tile.colours() = { argbOf(m_state.textColor), argbOf(m_state.backgroundColor) };
    return tile;
}

std::optional<IntSize> DeviceContext::pixelSize(const RectD &box) const
{
    constexpr double kMost = 1 << 30;
    const double width = std::round(box.width() / m_device.unitsPerPixel);
    const double height = std::round(box.height() / m_device.unitsPerPixel);
    if (!(width >= 1 && height >= 1 && width <= kMost && height <= kMost))
        return std::nullopt;
    return IntSize{ int32_t(width), int32_t(height) };
}

bool DeviceContext::spendPixels(IntSize size)
{
    const int64_t pixels = int64_t(size.width) * size.height;
    const bool isLeft = pixels <= m_left.brushPixels;
    m_left.brushPixels -= isLeft ? pixels : 0;
    return isLeft;
}

// @return false where they cannot be told, or are too many
bool DeviceContext::takeBrushPixels(const BlitPlace &place, Bitmap &pixels)
{
    const Bitmap tile = brushTile(m_state.brush);
    if (tile.isNull())
        return true;
    const auto size = pixelSize(place.box);
    if (!size || !place.transform.isIdentity() || !spendPixels(*size))
        return false;
    const double pixel = m_device.unitsPerPixel;
    // Where the first pixel lies in a tile.
    const auto offset = [pixel](double at, double start, int32_t origin, int32_t length) {
        const double tiles = (std::round((at - start) / pixel) - origin) / length;
        return int32_t(std::lround((tiles - std::floor(tiles)) * length)) % length;
    };
    const int32_t left =
            offset(place.box.left, m_device.view.left, m_state.brushOrigin.x, tile.width());
    const int32_t top =
            offset(place.box.top, m_device.view.top, m_state.brushOrigin.y, tile.height());
    pixels = Bitmap(PixelFormat::Bgra32, *size);
    std::vector<Argb> from = tile.lineBuffer(), to = pixels.lineBuffer();
    for (int32_t y = 0; y < pixels.height(); ++y) {
        tile.readLine((top + y) % tile.height(), from.data());
        for (int32_t x = 0; x < pixels.width(); ++x)
            to[size_t(x)] = from[size_t((left + x) % tile.width())];
        pixels.writeLine(y, to.data());
    }
    return true;
}

} // namespace svgtool::picture
