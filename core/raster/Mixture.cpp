#include "core/raster/Mixture.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

namespace svgtool {

namespace {

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

    // The mixtures of an operation and a pattern. Each bit of the source counts by itself, so what
    // becomes of any follows from what becomes of black and of white.
    class BySource
    {
    public:
        BySource(RasterOperation operation, Argb pattern)
            : m_black(mixtureOf(operation, pattern, 0)),
              m_white(mixtureOf(operation, pattern, kColourBits))
        {
        }
        PixelMixture of(Argb source) const
        {
            return { (m_white.keep & source) | (m_black.keep & ~source),
                     (m_white.flip & source) | (m_black.flip & ~source) };
        }

    private:
        PixelMixture m_black, m_white;
    };

} // namespace

Mixture::Mixture(MixedTransfer transfer) : m_size(transfer.source.size())
{
    m_transfers.push_back(std::move(transfer));
}

Mixture::Kind Mixture::kind() const
{
    Kind kind;
    Lines lines(*this);
    std::optional<PixelMixture> last; // neighbours are often alike
    for (int32_t y = 0; y < m_size.height; ++y) {
        for (const PixelMixture pixel : lines.at(y)) {
            if (pixel == last)
                continue;
            last = pixel;
            kind.isPlain = kind.isPlain && (pixel.isOpaque() || pixel.isNothing());
            kind.isUnion = kind.isUnion && (pixel.keep ^ pixel.flip) == kColourBits;
            kind.isDisjoint = kind.isDisjoint && (pixel.keep & pixel.flip) == 0;
            // A channel that keeps nothing is painted, whatever its colour.
            kind.isSaturated = kind.isSaturated && isSaturatedColour(pixel.keep)
                    && isSaturatedColour(pixel.flip & pixel.keep);
        }
    }
    return kind;
}

void Mixture::then(Mixture next)
{
    m_size = { std::max(m_size.width, next.m_size.width),
               std::max(m_size.height, next.m_size.height) };
    std::ranges::move(next.m_transfers, std::back_inserter(m_transfers));
}

Bitmap Mixture::bitmapOf(Argb PixelMixture::*colour) const
{
    Bitmap result(PixelFormat::Bgr32, m_size);
    std::vector<Argb> line = result.lineBuffer();
    Lines lines(*this);
    for (int32_t y = 0; y < m_size.height; ++y) {
        std::ranges::transform(lines.at(y), line.begin(), colour);
        result.writeLine(y, line.data());
    }
    return result;
}

Mixture::Lines::Lines(const Mixture &mixture)
    : m_height(mixture.m_size.height), m_pixels(size_t(mixture.m_size.width))
{
    for (const MixedTransfer &from : mixture.m_transfers) {
        const int32_t width = from.source.width();
        Transfer transfer{ &from, {}, std::vector<PixelMixture>(size_t(width)) };
        for (int32_t x = 0; x < mixture.m_size.width; ++x)
            transfer.columns.push_back(nearest(x, width, mixture.m_size.width));
        m_transfers.push_back(std::move(transfer));
    }
}

const std::vector<PixelMixture> &Mixture::Lines::at(int32_t y)
{
    bool isOther = false;
    for (Transfer &transfer : m_transfers) {
        const int32_t line = nearest(y, transfer.from->source.height(), m_height);
        if (transfer.line != line) {
            read(transfer, line);
            isOther = true;
        }
    }
    if (!isOther) // it is enlarged
        return m_pixels;
    std::ranges::fill(m_pixels, PixelMixture());
    for (const Transfer &transfer : m_transfers) {
        for (size_t x = 0; x < m_pixels.size(); ++x)
            m_pixels[x] = m_pixels[x].then(transfer.pixels[size_t(transfer.columns[x])]);
    }
    return m_pixels;
}

void Mixture::Lines::read(Transfer &transfer, int32_t line)
{
    const MixedTransfer &from = *transfer.from;
    const size_t width = transfer.pixels.size();
    transfer.line = line;
    m_source.resize(width);
    m_pattern.assign(width, from.colour);
    from.source.readLine(line, m_source.data());
    if (!from.pattern.isNull())
        from.pattern.readLine(line, m_pattern.data());
    const bool isMasked = !from.mask.isNull(), isPatterned = !from.pattern.isNull();
    const auto maskAt = [&](size_t x) {
        return isMasked ? from.mask.indexAt(int32_t(x), line) : uint8_t(1);
    };
    Argb pattern = m_pattern[0];
    std::array mixers{ BySource(from.outside, pattern), BySource(from.operation, pattern) };
    const auto mixtureAt = [&](size_t x) {
        // What run lengths skip, and what a hatch leaves alone.
        if (alphaOf(m_source[x]) == 0 || (isPatterned && alphaOf(m_pattern[x]) == 0))
            return PixelMixture();
        if (m_pattern[x] != pattern) {
            pattern = m_pattern[x];
            mixers = { BySource(from.outside, pattern), BySource(from.operation, pattern) };
        }
        return mixers[maskAt(x)].of(m_source[x]);
    };
    transfer.pixels[0] = mixtureAt(0);
    for (size_t x = 1; x < width; ++x) {
        const bool isLikeLast = m_source[x] == m_source[x - 1]
                && (!isPatterned || m_pattern[x] == m_pattern[x - 1])
                && (!isMasked || maskAt(x) == maskAt(x - 1));
        transfer.pixels[x] = isLikeLast ? transfer.pixels[x - 1] : mixtureAt(x);
    }
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
