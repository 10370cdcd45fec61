#include "core/raster/Mixture.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace svgtool {

namespace {

    // Calls with each pixel's mixture, but not again with that of the neighbour.
    template<class Call>
    void eachPixel(const Bitmap &keep, const Bitmap &flip, Call call)
    {
        std::vector<Argb> keepLine = keep.lineBuffer(), flipLine = flip.lineBuffer();
        std::optional<PixelMixture> last;
        for (int32_t y = 0; y < keep.height(); ++y) {
            keep.readLine(y, keepLine.data());
            flip.readLine(y, flipLine.data());
            for (size_t x = 0; x < keepLine.size(); ++x) {
                const PixelMixture pixel{ keepLine[x] & kColourBits, flipLine[x] & kColourBits };
                if (pixel == last)
                    continue;
                call(pixel);
                last = pixel;
            }
        }
    }

    // Whether each of the three bytes has all bits or none.
    constexpr bool isSaturatedColour(Argb colour)
    {
        const Argb ones = colour & 0x010101;
        return (colour & kColourBits) == ones * 255;
    }

    // The pixel, of so many `from`, under the centre of pixel `at` of so many `to`; where that lies
    // between two, the first.
    int32_t nearest(int32_t at, int32_t from, int32_t to)
    {
        return int32_t(((int64_t(at) * 2 + 1) * from - 1) / (int64_t(to) * 2));
    }

} // namespace

Mixture::Mixture(const Bitmap &source, RasterOperation operation, Argb colour,
                 const Bitmap &pattern)
    : m_keep(PixelFormat::Bgr32, source.size()), m_flip(PixelFormat::Bgr32, source.size())
{
    std::vector<Argb> keep = source.lineBuffer(), flip = source.lineBuffer();
    std::vector<Argb> patterns(keep.size(), colour);
    Argb lastSource = 0, lastPattern = colour; // neighbours are often alike
    PixelMixture pixel = mixtureOf(operation, colour, 0);
    for (int32_t y = 0; y < source.height(); ++y) {
        source.readLine(y, flip.data());
        if (!pattern.isNull())
            pattern.readLine(y, patterns.data());
        for (size_t x = 0; x < flip.size(); ++x) {
            // What run lengths skip, and what a hatch leaves alone.
            if (alphaOf(flip[x]) == 0 || (!pattern.isNull() && alphaOf(patterns[x]) == 0)) {
                keep[x] = kColourBits;
                flip[x] = 0;
                continue;
            }
            if (flip[x] != lastSource || patterns[x] != lastPattern) {
                lastSource = flip[x];
                lastPattern = patterns[x];
                pixel = mixtureOf(operation, lastPattern, lastSource);
            }
            keep[x] = pixel.keep;
            flip[x] = pixel.flip;
        }
        m_keep.writeLine(y, keep.data());
        m_flip.writeLine(y, flip.data());
    }
    judge();
}

void Mixture::judge()
{
    m_isPlain = m_isSaturated = m_isUnion = m_isDisjoint = true;
    eachPixel(m_keep, m_flip, [this](PixelMixture pixel) {
        m_isPlain = m_isPlain && (pixel.isOpaque() || pixel.isNothing());
        m_isUnion = m_isUnion && (pixel.keep ^ pixel.flip) == kColourBits;
        m_isDisjoint = m_isDisjoint && (pixel.keep & pixel.flip) == 0;
        // A channel that keeps nothing is painted, whatever its colour.
        m_isSaturated = m_isSaturated && isSaturatedColour(pixel.keep)
                && isSaturatedColour(pixel.flip & pixel.keep);
    });
}

void Mixture::chooseByMask(const Mixture &other, const Bitmap &mask)
{
    std::vector<Argb> ours = m_keep.lineBuffer(), theirs = ours;
    for (int32_t y = 0; y < m_keep.height(); ++y) {
        for (auto [our, their] :
             { std::pair{ &m_keep, &other.m_keep }, std::pair{ &m_flip, &other.m_flip } }) {
            our->readLine(y, ours.data());
            their->readLine(y, theirs.data());
            for (int32_t x = 0; x < m_keep.width(); ++x) {
                if (mask.indexAt(x, y) == 0)
                    ours[size_t(x)] = theirs[size_t(x)];
            }
            our->writeLine(y, ours.data());
        }
    }
    judge();
}

void Mixture::resample(IntSize size)
{
    m_keep = resampled(std::move(m_keep), size);
    m_flip = resampled(std::move(m_flip), size);
}

void Mixture::then(const Mixture &next)
{
    // The finer one of the two says how many pixels there are.
    const IntSize both{ std::max(size().width, next.size().width),
                        std::max(size().height, next.size().height) };
    resample(both);
    std::vector<Argb> keep = m_keep.lineBuffer(), flip = keep;
    std::vector<Argb> nextKeep = next.m_keep.lineBuffer(), nextFlip = nextKeep;
    for (int32_t y = 0; y < both.height; ++y) {
        m_keep.readLine(y, keep.data());
        m_flip.readLine(y, flip.data());
        const int32_t line = nearest(y, next.size().height, both.height);
        next.m_keep.readLine(line, nextKeep.data());
        next.m_flip.readLine(line, nextFlip.data());
        for (int32_t x = 0; x < both.width; ++x) {
            const auto from = size_t(nearest(x, next.size().width, both.width));
            const auto to = size_t(x);
            const PixelMixture pixel =
                    PixelMixture{ keep[to], flip[to] }.then({ nextKeep[from], nextFlip[from] });
            keep[to] = pixel.keep;
            flip[to] = pixel.flip;
        }
        m_keep.writeLine(y, keep.data());
        m_flip.writeLine(y, flip.data());
    }
    judge();
}

Bitmap resampled(Bitmap bitmap, IntSize size)
{
    if (bitmap.size() == size)
        return bitmap;
    // Of indexed pixels the indices; a byte each, as there is no writing single bits.
    const bool isIndexed = bitmap.isIndexed();
    const PixelFormat wide =
            bitmap.format() == PixelFormat::Bgra32 ? PixelFormat::Bgra32 : PixelFormat::Bgr32;
    Bitmap result(isIndexed ? PixelFormat::Indexed8 : wide, size);
    if (isIndexed)
        result.colours() = bitmap.colours();
    std::vector<int32_t> columns(static_cast<size_t>(size.width));
    for (int32_t x = 0; x < size.width; ++x)
        columns[size_t(x)] = nearest(x, bitmap.width(), size.width);
    std::vector<Argb> from = bitmap.lineBuffer(), to = result.lineBuffer();
    int32_t last = -1;
    for (int32_t y = 0; y < size.height; ++y) {
        const int32_t line = nearest(y, bitmap.height(), size.height);
        if (line == last) {
            std::copy_n(result.line(y - 1), result.lineBytes(), result.line(y));
            continue;
        }
        last = line;
        if (isIndexed) {
            for (size_t x = 0; x < columns.size(); ++x)
                result.line(y)[x] = bitmap.indexAt(columns[x], line);
            continue;
        }
        bitmap.readLine(line, from.data());
        for (size_t x = 0; x < columns.size(); ++x)
            to[x] = from[size_t(columns[x])];
        result.writeLine(y, to.data());
    }
    return result;
}

std::optional<Argb> onlyColour(const Bitmap &bitmap)
{
    std::vector<Argb> line = bitmap.lineBuffer();
    std::optional<Argb> colour;
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        bitmap.readLine(y, line.data());
        for (const Argb pixel : line) {
            if (colour && pixel != *colour)
                return std::nullopt;
            colour = pixel;
        }
    }
    return colour;
}

} // namespace svgtool
