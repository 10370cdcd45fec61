#include "picture/gdiplus/Brushes.h"
#include "picture/gdiplus/Graphics.h"

#include "core/raster/DibDecoder.h"
#include "core/raster/EmfPlusBitmap.h"
#include "core/raster/ImageFile.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace svgtool::picture {

// A BMP file is a bitmap as records hold it, behind a head of its own.
static std::optional<picture::Image> bmpImage(ByteView file, int64_t &runLengthPixels)
{
    constexpr int64_t kHead = 14;
    const auto packed = slice(file, kHead, file.size - kHead);
    if (file.size < kHead || file.data[0] != 'B' || file.data[1] != 'M' || !packed)
        return std::nullopt;
    const auto dib = splitPackedDib(*packed, 0);
    auto decoded = dib ? ConvertTo32Bits(*dib, runLengthPixels) : std::nullopt;
    if (!decoded || decoded->isFile())
        return std::nullopt;
    picture::Image image;
    image.size = decoded->size;
    image.pixels = std::move(decoded->pixels);
    return image;
}

static std::optional<picture::Image> readImage(const plus::Image &image, int64_t &runLengthPixels)
{
    picture::Image result;
    if (const auto *const bitmap = std::get_if<plus::PixelBitmap>(&image)) {
        auto pixels = decodeBitmap(*bitmap);
        if (!pixels)
            return std::nullopt;
        result.size = pixels->size();
        result.pixels = std::move(*pixels);
        return result;
    }
    const auto *const compressed = std::get_if<plus::CompressedBitmap>(&image);
    if (compressed == nullptr)
        return std::nullopt;
    const ByteView file{ compressed->file.data(), int64_t(compressed->file.size()) };
    const auto known = inspectImageFile(file);
    if (!known)
        return bmpImage(file, runLengthPixels);
    result.file = compressed->file;
    result.mediaType = known->mediaType;
    result.size = known->size;
    return result;
}

std::optional<Graphics::KnownImage> Graphics::imageOf(const Image &image)
{
    if (!image)
        return std::nullopt;
    const auto [known, isNew] = m_images.try_emplace(image);
    if (isNew) {
        if (auto read = readImage(*image, m_left.runLengthPixels)) {
            const IntSize size = read->size;
            known->second = { m_builder.image(std::move(*read)), size };
        }
    }
    return known->second.number != kNone ? std::optional(known->second) : std::nullopt;
}

// Whether enlarged pixels stay squares.
bool Graphics::keepsPixels() const
{
    constexpr uint8_t kLowQuality = 1, kNearestNeighbor = 5;
    return m_state.interpolation == kLowQuality || m_state.interpolation == kNearestNeighbor;
}

Played Graphics::drawImage(const Image &image, const plus::ImageAttributes *attributes,
                           const RectD &source, const RectD &to)
{
    const PointD corners[] = { { to.left, to.top }, { to.right, to.top }, { to.left, to.bottom } };
    return drawImagePoints(image, attributes, source, corners);
}

// What lies around an image, as far as the source asks for it.
void Graphics::fillAround(const KnownImage &image, const plus::ImageAttributes &attributes,
                          const Affine &place, const RectD &source)
{
    Node node = newNode();
    if (attributes.wrapMode == plus::WrapMode::Clamp) {
        if (colorOf(attributes.clampColor).alpha == 0)
            return;
        node.fill = m_builder.paint({ Paint::Kind::Solid, colorOf(attributes.clampColor), kNone });
    } else {
        const auto paint = patternPaint(image, attributes.wrapMode, place);
        if (!paint)
            return;
        node.fill = m_builder.paint(*paint);
    }
    Path box;
    box.addRect(source);
    m_builder.add(node, box, place);
}

Played Graphics::drawImagePoints(const Image &given, const plus::ImageAttributes *attributes,
                                 const RectD &source, std::span<const PointD, 3> corners)
{
    const auto image = imageOf(given);
    if (!image)
        return notDone("its image cannot be read");
    if (isClippedAway())
        return kDone;
    const double width = source.width(), height = source.height();
    const PointD x{ corners[1].x - corners[0].x, corners[1].y - corners[0].y };
    const PointD y{ corners[2].x - corners[0].x, corners[2].y - corners[0].y };
    const Affine fromSource{ x.x / width, x.y / width, y.x / height, y.y / height, 0, 0 };
    const Affine place = Affine::translation(-source.left, -source.top)
                                 .then(fromSource)
                                 .then(Affine::translation(corners[0].x, corners[0].y))
                                 .then(m_state.toPicture);
    if (!std::isfinite(1 / place.determinant()))
        return kDone; // it has no area
    const RectD whole{ 0, 0, double(image->size.width), double(image->size.height) };
    const RectD asked{ std::min(source.left, source.right), std::min(source.top, source.bottom),
                       std::max(source.left, source.right), std::max(source.top, source.bottom) };
    if (!whole.contains(asked) && attributes != nullptr)
        fillAround(*image, *attributes, place, asked);
    const PointD offset = sampleOffset(place);
    Node node = newNode();
    if (!asked.contains(whole) || offset != PointD{}) {
        const auto clip = cutTo(intersection(asked, whole), place);
        if (!clip)
            return kDone;
        node.clip = *clip;
    }
    const Affine shown = Affine::translation(-offset.x, -offset.y).then(place);
    ImagePlace placed{ image->number, whole, keepsPixels() };
    // Where no turn is left the place says it all.
    if (shown.b == 0 && shown.c == 0 && shown.a > 0 && shown.d > 0)
        placed.box = mapBounds(shown, whole);
    else
        node.transform = m_builder.transform(shown);
    m_builder.add(node, placed);
    return kDone;
}

// Pixels of the picture look for theirs at their corners, so that an image that is enlarged lies
// further to the left and the top, but not where they look at their centres.
PointD Graphics::sampleOffset(const Affine &place) const
{
    constexpr uint8_t kHighQuality = 2, kHalf = 4;
    if (m_state.pixelOffset == kHighQuality || m_state.pixelOffset == kHalf)
        return {};
    const double x = place.scaleX() / m_device.unitsPerPixel;
    const double y = place.scaleY() / m_device.unitsPerPixel;
    constexpr double kEnlarged = 1.05;
    return { x > kEnlarged ? (1 - 1 / x) / 2 : 0, y > kEnlarged ? (1 - 1 / y) / 2 : 0 };
}

// The clip in force, cut to a part of an image; nothing where that has no area.
std::optional<Index> Graphics::cutTo(const RectD &part, const Affine &place)
{
    if (part.isEmpty())
        return std::nullopt;
    Area area;
    area.path.addRect(part);
    area.path.transform(place);
    return clipTo(area);
}

} // namespace svgtool::picture
