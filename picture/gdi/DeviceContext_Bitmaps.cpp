#include "picture/gdi/DeviceContext.h"

#include "core/raster/DibHeader.h"
#include "core/raster/Mixture.h"
#include "core/records/Fields.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace svgtool::picture {

namespace {

    constexpr Played kBadBitmap = notDone("its bitmap makes no sense");

    // One axis of a transfer: pixels from `source` to `sourceEnd` fill what lies between `from` and
    // `to`.
    struct Axis
    {
        double source, sourceEnd;
        double from, to;
        bool isMirrored = false;

        // Makes both directions ascend, and cuts off what lies outside [0, size).
        // @return false when nothing is left
        bool straighten(double size)
        {
            if (sourceEnd < source) {
                std::swap(source, sourceEnd);
                isMirrored = !isMirrored;
            }
            if (to < from) {
                std::swap(from, to);
                isMirrored = !isMirrored;
            }
            if (!(source < sourceEnd && from < to))
                return false;
            const double unitsPerPixel = (to - from) / (sourceEnd - source);
            const double before = std::fmax(0, -source) * unitsPerPixel;
            const double behind = std::fmax(0, sourceEnd - size) * unitsPerPixel;
            from += isMirrored ? behind : before;
            to -= isMirrored ? before : behind;
            source = std::fmax(0, source);
            sourceEnd = std::fmin(sourceEnd, size);
            return source < sourceEnd && from < to;
        }

        // A destination that goes backwards begins with the pixel that its corner names.
        void closeMirrored()
        {
            if (to < from) {
                ++from;
                ++to;
            }
        }

        // Cuts off whole pixels that lie outside what can be seen.
        // @param least  of the pixels that are worth it
        void cut(double first, double end, double least)
        {
            const double pixels = sourceEnd - source;
            const double unitsPerPixel = (to - from) / pixels;
            const double outBefore = std::floor((first - from) / unitsPerPixel);
            const double outBehind = std::floor((to - end) / unitsPerPixel);
            const double before = std::clamp(outBefore, 0.0, pixels - 1);
            const double behind = std::clamp(outBehind, 0.0, pixels - 1 - before);
            if (!(before + behind > least * pixels))
                return;
            from += before * unitsPerPixel;
            to -= behind * unitsPerPixel;
            source += isMirrored ? behind : before;
            sourceEnd -= isMirrored ? before : behind;
        }
    };

    RectD boxOf(PointL at, PointL extent)
    {
        return { double(at.x), double(at.y), double(at.x) + extent.x, double(at.y) + extent.y };
    }

    double rounded(double value)
    {
        return std::floor(value + 0.5);
    }

    bool isBottomUp(const DibBytes &dib)
    {
        const auto header = readDibHeader(dib.info, dib.usage);
        return header && header->isBottomUp;
    }

    // The header of a bitmap of so many lines as there are bits for.
    std::string headerOfBand(const DibBytes &dib, uint32_t lines)
    {
        constexpr size_t kCoreHeader = 12; // BITMAPCOREHEADER has a height of 16 bits
        std::string info(dib.info.data, size_t(dib.info.size));
        const auto height = isBottomUp(dib) ? lines : 0 - lines;
        const bool isCore = Fields(dib.info).dword() == kCoreHeader;
        const size_t place = isCore ? 6 : 8, bytes = isCore ? 2 : 4;
        for (size_t i = 0; i < bytes; ++i)
            info[place + i] = char(height >> 8 * i);
        return info;
    }

    // The bits of a bitmap that is cut off behind its first lines, with lines of ones, which are
    // white or the last colour, in the place of the others; empty where it is not.
    std::string filledBits(const DibBytes &dib, int64_t &pixelsLeft)
    {
        const auto header = readDibHeader(dib.info, dib.usage);
        if (!header || header->isFile() || header->isRunLengths())
            return {};
        const int64_t stride = header->stride();
        const int64_t lines = stride > 0 ? dib.bits.size / stride : 0;
        // So that a few bytes do not become a large bitmap.
        constexpr int64_t kMostTimes = 32;
        if (lines < 1 || lines >= header->height || header->height / kMostTimes > lines
            || header->height - lines > pixelsLeft / header->width)
            return {};
        pixelsLeft -= (header->height - lines) * header->width;
        std::string bits(dib.bits.data, size_t(lines * stride));
        bits.append(size_t((header->height - lines) * stride), char(0xFF));
        return bits;
    }

} // namespace

std::optional<DecodedBitmap> DeviceContext::decode(const DibBytes &dib)
{
    constexpr uint32_t kOfPalette = 1;
    DibBytes whole = dib;
    whole.isLasting = m_builder.isLent(dib.bits);
    if (m_state.palette || dib.usage == kOfPalette)
        whole.palette = palette();
    const std::string bits = filledBits(dib, m_left.runLengthPixels);
    if (!bits.empty()) {
        whole.bits = { bits.data(), int64_t(bits.size()) };
        whole.isLasting = false;
        m_shortfall = approximated("its bitmap lacks lines");
    }
    return ConvertTo32Bits(whole, m_left.runLengthPixels);
}

std::optional<DecodedBitmap> DeviceContext::decode(const BlitSource &source)
{
    return source.bitmap16.data != nullptr ? decodeBitmap16(source.bitmap16) : decode(source.dib);
}

// Boxes are of whole device units, as GDI's are, unless the world turns them.
std::optional<BlitPlace> DeviceContext::place(const BlitBox &to, const RectD &from,
                                              IntSize size) const
{
    const RectD box = boxOf(to.at, to.extent);
    BlitPlace place;
    Axis x{ from.left, from.right, box.left, box.right };
    Axis y{ from.top, from.bottom, box.top, box.bottom };
    RectD view = m_device.view;
    if (m_state.toDevice.b == 0 && m_state.toDevice.c == 0) {
        const PointD first = device({ box.left, box.top });
        const PointD second = device({ box.right, box.bottom });
        x = { from.left, from.right, rounded(first.x), rounded(second.x) };
        y = { from.top, from.bottom, rounded(first.y), rounded(second.y) };
        x.closeMirrored();
        y.closeMirrored();
        x.from *= m_device.toPicture.a;
        x.to *= m_device.toPicture.a;
        y.from *= m_device.toPicture.d;
        y.to *= m_device.toPicture.d;
    } else {
        place.transform = toPicture();
        const auto back = place.transform.inverse();
        if (!back)
            return std::nullopt;
        view = mapBounds(*back, view);
    }
    if (!x.straighten(size.width) || !y.straighten(size.height))
        return std::nullopt;
    constexpr double kWorthIt = 0.125; // of each axis; of both, nearly a quarter
    x.cut(view.left, view.right, kWorthIt);
    y.cut(view.top, view.bottom, kWorthIt);
    // Parts of pixels are whole ones here.
    place.part.x = int32_t(std::floor(x.source));
    place.part.y = int32_t(std::floor(y.source));
    place.part.width = int32_t(std::ceil(x.sourceEnd)) - place.part.x;
    place.part.height = int32_t(std::ceil(y.sourceEnd)) - place.part.y;
    place.box = { x.from, y.from, x.to, y.to };
    place.mirrorsX = x.isMirrored;
    place.mirrorsY = y.isMirrored;
    if (intersection(place.box, view).isEmpty())
        return std::nullopt;
    return place;
}

Played DeviceContext::paintPixels(Bitmap pixels, const BlitPlace &place, double opacity)
{
    Node node = newNode();
    node.transform = m_builder.transform(place.transform);
    node.opacity = float(opacity);
    if (const auto colour = onlyColour(pixels)) {
        if (alphaOf(*colour) == 0 || opacity == 0)
            return kDone;
        if (isOpaque(*colour) && opacity == 1) {
            node.fill = m_builder.paint({ Paint::Kind::Solid, colorOf(*colour), kNone });
            m_builder.add(node, Rect{ place.box, 0, 0 });
            return kDone;
        }
    }
    const RectD shown = mapBounds(place.transform, place.box);
    const double pixel = m_device.unitsPerPixel;
    ImagePlace placed;
    placed.box = place.box;
    // GDI takes the nearest pixel always. It is kept where there are fewer pixels than the picture
    // has; the others look better smoothed.
    const double timesX = shown.width() / (pixels.width() * pixel);
    const double timesY = shown.height() / (pixels.height() * pixel);
    placed.isEnlarged = timesX * timesY > 1 && std::fmin(timesX, timesY) > 0.5;
    Image image;
    image.size = pixels.size();
    image.pixels = std::move(pixels);
    placed.image = m_builder.image(std::move(image));
    m_builder.add(node, placed);
    return kDone;
}

// A file is shown as it is: what of it is not wanted is clipped away, and the place mirrors it.
Played DeviceContext::paintFile(const DecodedBitmap &bitmap, const BlitPlace &place)
{
    Node node = newNode();
    const RectD &box = place.box;
    const double pixelX = box.width() / place.part.width, pixelY = box.height() / place.part.height;
    const int64_t rightOf = int64_t(bitmap.size.width) - place.part.x - place.part.width;
    const int64_t below = int64_t(bitmap.size.height) - place.part.y - place.part.height;
    ImagePlace placed;
    placed.box.left = box.left - double(place.mirrorsX ? rightOf : place.part.x) * pixelX;
    placed.box.top = box.top - double(place.mirrorsY ? below : place.part.y) * pixelY;
    placed.box.right = placed.box.left + bitmap.size.width * pixelX;
    placed.box.bottom = placed.box.top + bitmap.size.height * pixelY;
    if (place.part != IntRect{ 0, 0, bitmap.size.width, bitmap.size.height }) {
        Clip clip;
        clip.parent = node.clip;
        clip.path.addRect(box);
        clip.path.transform(place.transform);
        node.clip = m_builder.clip(clip);
    }
    const Affine mirrored{ place.mirrorsX ? -1.0 : 1.0,
                           0,
                           0,
                           place.mirrorsY ? -1.0 : 1.0,
                           place.mirrorsX ? placed.box.left + placed.box.right : 0,
                           place.mirrorsY ? placed.box.top + placed.box.bottom : 0 };
    node.transform = m_builder.transform(mirrored.then(place.transform));
    Image image;
    image.file.assign(bitmap.file.data, size_t(bitmap.file.size));
    image.mediaType = bitmap.mediaType;
    image.size = bitmap.size;
    placed.image = m_builder.image(std::move(image));
    m_builder.add(node, placed);
    return kDone;
}

Played DeviceContext::blit(const BlitBox &to, const RectD &from, DecodedBitmap bitmap,
                           RasterOperation operation)
{
    const auto place = this->place(to, from, bitmap.size);
    if (!place || isHidden())
        return kDone;
    if (bitmap.isFile()) {
        const Played played = paintFile(bitmap, *place);
        return operation == RasterOperations::SourceCopy ? played
                                                         : approximated("it looks different");
    }
    Bitmap pixels = std::move(bitmap.pixels);
    if (pixels.format() == PixelFormat::Bgra32)
        pixels.dropAlpha(); // which these calls do not know
    if (place->part != IntRect{ 0, 0, bitmap.size.width, bitmap.size.height })
        pixels = pixels.cut(place->part);
    pixels.mirror(place->mirrorsX, place->mirrorsY);
    if (operation == RasterOperations::SourceCopy)
        return paintPixels(std::move(pixels), *place, 1);
    if (pixels.pixelCount() > kLayeredPixels)
        return kTooLargeToMix;
    Bitmap pattern;
    const bool isKnown = !operation.usesPattern() || takeBrushPixels(*place, pattern);
    if (!pattern.isNull())
        pixels = resampled(std::move(pixels), pattern.size());
    const Played played = paintMixture(
            Mixture({ std::move(pixels), operation, patternColour(), std::move(pattern) }), *place);
    return isKnown ? played : kTakenForOneColour;
}

Played DeviceContext::fillBlit(const BlitBox &to, RasterOperation operation)
{
    Node node = newNode();
    const auto place = this->place(to, { 0, 0, 1, 1 }, { 1, 1 });
    if (!place)
        return kDone;
    node.transform = m_builder.transform(place->transform);
    node.fill = operation.usesPattern() ? fillPaint() : m_builder.paint(Paint());
    if (node.fill != kNone) // which does not turn with the box
        node.fill =
                m_builder.paint(unshaped(m_builder.scene().paints[node.fill], place->transform));
    return addMixed(
            node,
            [&](const Node &part) {
                m_builder.add(part, Rect{ place->box, 0, 0 });
            },
            operation);
}

Played DeviceContext::stretchDibits(const BlitBox &to, const BlitBox &from, const DibBytes &dib,
                                    uint32_t code)
{
    const RasterOperation operation(code);
    if (!operation.usesSource())
        return fillBlit(to, operation);
    auto bitmap = decode(dib);
    if (!bitmap)
        return kBadBitmap;
    RectD part = boxOf(from.at, from.extent);
    const double height = bitmap->size.height;
    part = { part.left, height - part.bottom, part.right, height - part.top };
    return blit(to, part, std::move(*bitmap), operation);
}

Played DeviceContext::setDibitsToDevice(PointL to, const BlitBox &from, const DibBytes &dib,
                                        uint32_t firstLine, uint32_t lines)
{
    const auto header = readDibHeader(dib.info, dib.usage);
    if (!header)
        return kBadBitmap;
    lines = std::min(lines, uint32_t(header->height));
    const bool isBand = lines < uint32_t(header->height);
    const std::string info = isBand ? headerOfBand(dib, lines) : std::string();
    auto bitmap = decode(
            isBand ? DibBytes{ { info.data(), int64_t(info.size()) }, dib.bits, dib.usage } : dib);
    if (!bitmap)
        return kBadBitmap;
    RectD part = boxOf(from.at, from.extent);
    part.top -= firstLine;
    part.bottom -= firstLine;
    part = { part.left, lines - part.bottom, part.right, lines - part.top };
    // A pixel of the bitmap is one of the device, whatever the mapping is.
    const PointD at = device({ double(to.x), double(to.y) });
    const Affine toDevice = std::exchange(m_state.toDevice, Affine());
    const BlitBox box{ { truncateToInt32(rounded(at.x)), truncateToInt32(rounded(at.y)) },
                       from.extent };
    const Played played = blit(box, part, std::move(*bitmap), RasterOperations::SourceCopy);
    m_state.toDevice = toDevice;
    return played;
}

Played DeviceContext::stretchBlt(const BlitBox &to, const BlitSource *source, uint32_t code)
{
    const RasterOperation operation(code);
    if (!operation.usesSource())
        return fillBlit(to, operation);
    auto bitmap = source != nullptr ? decode(*source) : std::nullopt;
    if (!bitmap)
        return kBadBitmap;
    return blit(to, source->pixelBox(), std::move(*bitmap), operation);
}

} // namespace svgtool::picture
