#include "core/raster/RasterOperation.h"

#include <algorithm>
#include <vector>

namespace svgtool {

namespace {

    void widen(Bitmap &bitmap)
    {
        if (bitmap.format() != PixelFormat::Bgra32)
            bitmap = bitmap.widened();
    }

    // Puts change(colour, isUsed) in the place of every pixel's colour; a colour table is changed
    // instead, whose colours need not be in use.
    template<class Change>
    void changePixels(Bitmap &bitmap, Change change)
    {
        if (bitmap.isIndexed()) {
            const auto used = bitmap.usedIndices();
            std::vector<Argb> &colours = bitmap.colours();
            for (size_t i = 0; i < colours.size(); ++i)
                colours[i] = change(colours[i], used[i]);
            return;
        }
        widen(bitmap);
        std::vector<Argb> line = bitmap.lineBuffer();
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            bitmap.readLine(y, line.data());
            for (Argb &pixel : line)
                pixel = change(pixel, true);
            bitmap.writeLine(y, line.data());
        }
    }

    // Whether all colours that pixels have are such. In a bitmap of two colours both count, since
    // documents depend on it.
    template<class IsSuch>
    bool everyPixel(const Bitmap &bitmap, IsSuch isSuch)
    {
        if (bitmap.isIndexed()) {
            const bool allCount = bitmap.format() == PixelFormat::Indexed1;
            const auto used = bitmap.usedIndices();
            for (size_t i = 0; i < bitmap.colours().size(); ++i) {
                if ((allCount || used[i]) && !isSuch(bitmap.colours()[i]))
                    return false;
            }
            return true;
        }
        std::vector<Argb> line = bitmap.lineBuffer();
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            bitmap.readLine(y, line.data());
            if (!std::all_of(line.begin(), line.end(), isSuch))
                return false;
        }
        return true;
    }

    // The operation for a pixel at a time. Neighbours are often alike.
    class PixelOperation
    {
    public:
        PixelOperation(RasterOperation operation, Argb pattern, bool darkens, bool &isExact)
            : m_operation(operation), m_pattern(pattern), m_darkens(darkens), m_isExact(isExact)
        {
        }
        Argb operator()(Argb source, bool isUsed)
        {
            if (m_source != source) {
                m_source = source;
                m_result = compute(source);
            }
            if (isUsed && !m_isResultExact)
                m_isExact = false;
            return m_result;
        }

    private:
        Argb compute(Argb source)
        {
            m_isResultExact = true;
            Argb result = source | kAlphaBits;
            if (const auto seen = m_operation.seen(m_pattern, source))
                result = *seen;
            else if (m_darkens)
                result = argb(0, 0, 0, 255U - redOf(source));
            else
                m_isResultExact = false;
            const Argb alpha = std::min(alphaOf(source), alphaOf(result));
            return (result & kColourBits) | alpha << 24;
        }

        RasterOperation m_operation;
        Argb m_pattern;
        bool m_darkens;
        bool &m_isExact;
        std::optional<Argb> m_source;
        Argb m_result = 0;
        bool m_isResultExact = true;
    };

} // namespace

std::optional<Argb> RasterOperation::seen(Argb pattern, Argb source) const
{
    const Argb onBlack = apply(pattern, source, 0) & kColourBits;
    const Argb onWhite = apply(pattern, source, kColourBits) & kColourBits;
    if (onBlack == onWhite)
        return onBlack | kAlphaBits;
    if (onBlack == 0 && onWhite == kColourBits)
        return kClear;
    return std::nullopt;
}

bool applyRasterOperation(Bitmap &bitmap, RasterOperation operation, Argb pattern)
{
    if (operation == RasterOperations::SourceCopy)
        return true;
    const bool darkens = operation == RasterOperations::SourceAnd && everyPixel(bitmap, isGrey);
    bool isExact = true;
    changePixels(bitmap, PixelOperation(operation, pattern, darkens, isExact));
    return isExact;
}

void clearColour(Bitmap &bitmap, Argb colour)
{
    changePixels(bitmap, [colour](Argb pixel, bool) {
        return ((pixel ^ colour) & kColourBits) == 0 ? kClear : pixel;
    });
}

void chooseByMask(Bitmap &bitmap, const Bitmap &other, const Bitmap &mask)
{
    widen(bitmap);
    std::vector<Argb> line = bitmap.lineBuffer();
    std::vector<Argb> otherLine = bitmap.lineBuffer();
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        bitmap.readLine(y, line.data());
        other.readLine(y, otherLine.data());
        for (int32_t x = 0; x < bitmap.width(); ++x) {
            if (mask.indexAt(x, y) == 0)
                line[size_t(x)] = otherLine[size_t(x)];
        }
        bitmap.writeLine(y, line.data());
    }
}

bool isBlackAndWhite(const Bitmap &bitmap)
{
    return everyPixel(bitmap, [](Argb pixel) {
        return (pixel & kColourBits) == 0 || (pixel & kColourBits) == kColourBits;
    });
}

// The pixel that scaling puts in each place: the nearest, found in steps of 1/4096 of a pixel. The
// error of a step adds up over large pictures; documents depend on it.
static std::vector<int32_t> scaledPlaces(int32_t from, int32_t to)
{
    std::vector<int32_t> places(static_cast<size_t>(to));
    const double scale = double(to) / double(from);
    const auto step = static_cast<int64_t>(1.0 / scale * 4096.0);
    for (size_t i = 0; i < places.size(); ++i)
        places[i] = int32_t((int64_t(i) * step + step / 2) >> 12);
    return places;
}

// Clears the pixels of the bitmap over a mask that is not black, if they are to be cleared.
template<class IsCleared>
static Bitmap cutByMask(const Bitmap &bitmap, const Bitmap &mask, IsCleared isCleared)
{
    const bool isPixel = bitmap.pixelCount() == 1;
    Bitmap result(PixelFormat::Bgra32, isPixel ? mask.size() : bitmap.size());
    const std::vector<int32_t> columns = scaledPlaces(mask.width(), result.width());
    const std::vector<int32_t> lines = scaledPlaces(mask.height(), result.height());
    std::vector<Argb> line(columns.size());
    std::vector<Argb> maskLine = mask.lineBuffer();
    for (int32_t y = 0; y < result.height(); ++y) {
        bitmap.readLine(isPixel ? 0 : y, line.data());
        if (isPixel)
            std::fill(line.begin(), line.end(), line.front());
        mask.readLine(lines[size_t(y)], maskLine.data());
        for (size_t x = 0; x < line.size(); ++x) {
            if ((maskLine[size_t(columns[x])] & kColourBits) != 0 && isCleared(line[x]))
                line[x] = kClear;
        }
        result.writeLine(y, line.data());
    }
    return result;
}

Bitmap combineWithMask(const Bitmap &bitmap, const Bitmap &mask)
{
    return cutByMask(bitmap, mask, [](Argb pixel) { return (pixel & kColourBits) == 0; });
}

Bitmap stencil(const Bitmap &bitmap, const Bitmap &mask)
{
    return cutByMask(bitmap, mask, [](Argb) { return true; });
}

} // namespace svgtool
