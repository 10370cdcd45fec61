#include "core/raster/RasterOperation.h"

#include <QVector>

#include <algorithm>

namespace svgtool {

namespace {

    constexpr QRgb kTransparent = 0;
    constexpr QRgb kColourBits = 0xFFFFFF;

    bool isIndexed(const QImage &image)
    {
        return image.format() == QImage::Format_Mono || image.format() == QImage::Format_Indexed8;
    }

    // Puts change(pixel) in the place of every pixel; a colour table is changed instead.
    template<class Change>
    void changePixels(QImage &image, Change change)
    {
        if (isIndexed(image)) {
            QVector<QRgb> colours = image.colorTable();
            std::transform(colours.begin(), colours.end(), colours.begin(), change);
            image.setColorTable(colours);
            return;
        }
        image = std::move(image).convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            std::transform(line, line + image.width(), line, change);
        }
    }

    // Whether all colours that the image uses are such. Colours of its table may be unused.
    template<class IsSuch>
    bool everyPixel(const QImage &image, IsSuch isSuch)
    {
        if (isIndexed(image)) {
            const QVector<QRgb> colours = image.colorTable();
            if (std::all_of(colours.begin(), colours.end(), isSuch))
                return true;
            if (image.format() == QImage::Format_Mono)
                return false;
        }
        for (int y = 0; y < image.height(); ++y) {
            // A line at a time, so that no second image is held, and most images end it early.
            const QImage line =
                    image.copy(0, y, image.width(), 1).convertToFormat(QImage::Format_RGB32);
            const auto *pixels = reinterpret_cast<const QRgb *>(line.constScanLine(0));
            if (!std::all_of(pixels, pixels + line.width(), isSuch))
                return false;
        }
        return true;
    }

    // The operation for a pixel at a time. Neighbours are often alike.
    class PixelOperation
    {
    public:
        PixelOperation(RasterOperation operation, QRgb pattern, bool darkens, bool &isExact)
            : m_operation(operation), m_pattern(pattern), m_darkens(darkens), m_isExact(isExact)
        {
        }
        QRgb operator()(QRgb source)
        {
            if (m_source != source) {
                m_source = source;
                m_result = compute(source);
            }
            return m_result;
        }

    private:
        QRgb compute(QRgb source)
        {
            const QRgb colour = source | ~kColourBits;
            QRgb result = colour;
            if (const auto seen = m_operation.seen(m_pattern, source))
                result = *seen;
            else if (m_darkens)
                result = qRgba(0, 0, 0, 255 - qRed(source));
            else
                m_isExact = false;
            const int alpha = std::min(qAlpha(source), qAlpha(result));
            return (result & kColourBits) | QRgb(alpha) << 24;
        }

        RasterOperation m_operation;
        QRgb m_pattern;
        bool m_darkens;
        bool &m_isExact;
        std::optional<QRgb> m_source;
        QRgb m_result = 0;
    };

} // namespace

std::optional<QRgb> RasterOperation::seen(QRgb pattern, QRgb source) const
{
    const QRgb onBlack = apply(pattern, source, 0) & kColourBits;
    const QRgb onWhite = apply(pattern, source, kColourBits) & kColourBits;
    if (onBlack == onWhite)
        return onBlack | ~kColourBits;
    if (onBlack == 0 && onWhite == kColourBits)
        return kTransparent;
    return std::nullopt;
}

bool applyRasterOperation(QImage &image, RasterOperation operation, QRgb pattern)
{
    if (operation == RasterOperations::SourceCopy)
        return true;
    const bool darkens = operation == RasterOperations::SourceAnd
            && everyPixel(image, [](QRgb pixel) { return qIsGray(pixel); });
    bool isExact = true;
    changePixels(image, PixelOperation(operation, pattern, darkens, isExact));
    return isExact;
}

void clearColour(QImage &image, QRgb colour)
{
    changePixels(image, [colour](QRgb pixel) {
        return ((pixel ^ colour) & kColourBits) == 0 ? kTransparent : pixel;
    });
}

void chooseByMask(QImage &image, const QImage &other, const QImage &mask)
{
    image = std::move(image).convertToFormat(QImage::Format_ARGB32);
    const QImage wideOther = other.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        const auto *otherLine = reinterpret_cast<const QRgb *>(wideOther.constScanLine(y));
        const uchar *maskLine = mask.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            if ((maskLine[x / 8] & 0x80 >> x % 8) == 0)
                line[x] = otherLine[x];
        }
    }
}

bool isBlackAndWhite(const QImage &image)
{
    return everyPixel(image, [](QRgb pixel) {
        return (pixel & kColourBits) == 0 || (pixel & kColourBits) == kColourBits;
    });
}

// Clears the pixels of the image over a mask that is not black, if they are to be cleared.
template<class IsCleared>
static QImage cutByMask(const QImage &image, const QImage &mask, IsCleared isCleared)
{
    const bool isPixel = image.width() == 1 && image.height() == 1;
    const QSize size = isPixel ? mask.size() : image.size();
    const QImage wideMask = mask.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                                    .convertToFormat(QImage::Format_RGB32);
    QImage result = image.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                            .convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        const auto *maskLine = reinterpret_cast<const QRgb *>(wideMask.constScanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            if ((maskLine[x] & kColourBits) != 0 && isCleared(line[x]))
                line[x] = kTransparent;
        }
    }
    return result;
}

QImage combineWithMask(const QImage &image, const QImage &mask)
{
    return cutByMask(image, mask, [](QRgb pixel) { return (pixel & kColourBits) == 0; });
}

QImage stencil(const QImage &image, const QImage &mask)
{
    return cutByMask(image, mask, [](QRgb) { return true; });
}

} // namespace svgtool
