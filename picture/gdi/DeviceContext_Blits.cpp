#include "picture/gdi/DeviceContext.h"

#include "core/raster/Mixture.h"

#include <algorithm>
#include <cmath>
#include <utility>

// The transfers that look at colours, at alpha or at a mask.

namespace svgtool::picture {

static constexpr Played kBadBitmap = notDone("its bitmap makes no sense");
static constexpr Played kBadMask = notDone("its mask makes no sense");

RectD BlitSource::pixelBox() const
{
    const PointD first = toPixels.map({ double(box.at.x), double(box.at.y) });
    const PointD second =
            toPixels.map({ double(box.at.x) + box.extent.x, double(box.at.y) + box.extent.y });
    const auto rounded = [](double value) { return std::floor(value + 0.5); };
    return { rounded(first.x), rounded(first.y), rounded(second.x), rounded(second.y) };
}

// The pixels of the part that a place takes, turned as they are shown.
static Bitmap shownPart(Bitmap pixels, const BlitPlace &place)
{
    if (place.part != IntRect{ 0, 0, pixels.width(), pixels.height() })
        pixels = pixels.cut(place.part);
    pixels.mirror(place.mirrorsX, place.mirrorsY);
    return pixels;
}

// The mask over a part of the source; none of its bits is set outside of it.
static std::optional<Bitmap> maskOver(const Bitmap &mask, const BlitPlace &place,
                                      const RectD &source, PointL maskAt)
{
    constexpr double kFar = 1 << 30;
    const double x = place.part.x + maskAt.x - std::fmin(source.left, source.right);
    const double y = place.part.y + maskAt.y - std::fmin(source.top, source.bottom);
    if (!(std::abs(x) < kFar && std::abs(y) < kFar))
        return std::nullopt;
    Bitmap over = mask.cut({ int32_t(x), int32_t(y), place.part.width, place.part.height });
    over.mirror(place.mirrorsX, place.mirrorsY);
    return over;
}

Argb DeviceContext::patternColour() const
{
    return argbOf(m_state.brush.color);
}

Played DeviceContext::maskBlt(const BlitBox &to, const BlitSource *source, const BlitMask *mask,
                              uint32_t code)
{
    const RasterOperation inside(code), outside(code >> 8);
    if (mask == nullptr)
        return stretchBlt(to, source, code);
    auto maskBits = decode(mask->dib);
    if (!maskBits || !maskBits->isMask())
        return kBadMask;
    // Where the brush alone is painted through the mask, any pixels will do as the source.
    auto bitmap = source != nullptr ? decode(*source) : maskBits;
    const bool usesSource = inside.usesSource() || outside.usesSource();
    if (!bitmap || bitmap->isFile() || (source == nullptr && usesSource))
        return kBadBitmap;
    const RectD from = source != nullptr
            ? source->pixelBox()
            : RectD{ double(mask->at.x), double(mask->at.y), double(mask->at.x) + to.extent.x,
                     double(mask->at.y) + to.extent.y };
    const auto place = this->place(to, from, bitmap->size);
    if (!place || isHidden())
        return kDone;
    const auto over = maskOver(maskBits->pixels, *place, from, mask->at);
    if (!over)
        return kBadMask;
    Bitmap pixels = shownPart(std::move(bitmap->pixels), *place);
    if (pixels.pixelCount() > kLayeredPixels)
        return kTooLargeToMix;
    Bitmap pattern;
    const bool usesPattern = inside.usesPattern() || outside.usesPattern();
    const bool isKnown = !usesPattern || takeBrushPixels(*place, pattern);
    if (!pattern.isNull())
        pixels = resampled(std::move(pixels), pattern.size());
    const IntSize size = pixels.size();
    const Played played =
            paintMixture(Mixture({ std::move(pixels), inside, patternColour(), std::move(pattern),
                                   resampled(*over, size), outside }),
                         *place);
    return isKnown ? played : kTakenForOneColour;
}

Played DeviceContext::transparentBlt(const BlitBox &to, const BlitSource &source, Color key)
{
    auto bitmap = decode(source);
    if (!bitmap)
        return kBadBitmap;
    const auto place = this->place(to, source.pixelBox(), bitmap->size);
    if (!place || isHidden())
        return kDone;
    if (bitmap->isFile()) {
        paintFile(*bitmap, *place);
        return approximated("the colour that it leaves out is in a file");
    }
    Bitmap pixels = shownPart(std::move(bitmap->pixels), *place);
    clearColour(pixels, argbOf(key));
    return paintPixels(std::move(pixels), *place, 1);
}

// Colours from which their alpha has been taken out again, which was multiplied in.
static Bitmap withAlpha(const Bitmap &bitmap)
{
    Bitmap result(PixelFormat::Bgra32, bitmap.size());
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        const uint8_t *from = bitmap.line(y);
        uint8_t *to = result.line(y);
        for (int32_t x = 0; x < bitmap.width(); ++x, from += 4, to += 4) {
            const int alpha = from[3];
            for (int i = 0; i < 3; ++i)
                to[i] = alpha == 0 ? uint8_t(0)
                                   : uint8_t(std::min((from[i] * 255 + alpha / 2) / alpha, 255));
            to[3] = uint8_t(alpha);
        }
    }
    return result;
}

Played DeviceContext::alphaBlend(const BlitBox &to, const BlitSource &source, uint8_t constant,
                                 bool hasAlpha)
{
    auto bitmap = decode(source);
    if (!bitmap)
        return kBadBitmap;
    const auto place = this->place(to, source.pixelBox(), bitmap->size);
    if (!place || isHidden())
        return kDone;
    const double opacity = constant / 255.0;
    if (bitmap->isFile()) {
        const SceneBuilder::Mark mark = m_builder.mark();
        paintFile(*bitmap, *place);
        m_builder.scene().nodes[mark.nodes].opacity = float(opacity);
        return kDone;
    }
    Bitmap pixels = shownPart(std::move(bitmap->pixels), *place);
    const bool isWide = bitsPerPixel(pixels.format()) == 32;
    if (isWide && hasAlpha)
        pixels = withAlpha(pixels);
    else if (pixels.format() == PixelFormat::Bgra32)
        pixels.dropAlpha();
    return paintPixels(std::move(pixels), *place, opacity);
}

Played DeviceContext::plgBlt(std::span<const PointL, 3> corners, const BlitSource &source,
                             const BlitMask *mask)
{
    auto bitmap = decode(source);
    auto maskBits = mask != nullptr ? decode(mask->dib) : std::nullopt;
    if (!bitmap)
        return kBadBitmap;
    if (mask != nullptr && (!maskBits || !maskBits->isMask() || bitmap->isFile()))
        return kBadMask;
    // From a unit square to the parallelogram, and before that from pixels to the square.
    const RectD from = source.pixelBox();
    const PointD a{ double(corners[0].x), double(corners[0].y) };
    const PointD right{ corners[1].x - a.x, corners[1].y - a.y };
    const PointD down{ corners[2].x - a.x, corners[2].y - a.y };
    const auto toSquare =
            Affine{ from.width(), 0, 0, from.height(), from.left, from.top }.inverse();
    if (!toSquare)
        return kDone;
    const Affine logical = toSquare->then({ right.x, right.y, down.x, down.y, a.x, a.y });
    const RectD whole{ 0, 0, double(bitmap->size.width), double(bitmap->size.height) };
    const RectD box{ std::fmin(from.left, from.right), std::fmin(from.top, from.bottom),
                     std::fmax(from.left, from.right), std::fmax(from.top, from.bottom) };
    const RectD part = intersection(box, whole);
    if (part.isEmpty() || isHidden())
        return kDone;
    BlitPlace place;
    place.part = { int32_t(part.left), int32_t(part.top), int32_t(part.width()),
                   int32_t(part.height()) };
    place.box = part;
    place.transform = logical.then(toPicture());
    if (place.transform.b == 0 && place.transform.c == 0 && place.transform.a > 0
        && place.transform.d > 0)
        place.box = mapBounds(std::exchange(place.transform, Affine()), part);
    if (bitmap->isFile())
        return paintFile(*bitmap, place);
    Bitmap pixels = shownPart(std::move(bitmap->pixels), place);
    if (!maskBits)
        return paintPixels(std::move(pixels), place, 1);
    const auto over = maskOver(maskBits->pixels, place, from, mask->at);
    if (!over)
        return kBadMask;
    if (pixels.pixelCount() > kLayeredPixels)
        return kTooLargeToMix;
    return paintMixture(Mixture({ std::move(pixels), RasterOperations::SourceCopy, 0, {}, *over }),
                        place);
}

} // namespace svgtool::picture
