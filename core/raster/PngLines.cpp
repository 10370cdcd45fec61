#include "core/raster/PngLines.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace svgtool {

namespace {

    using Samples = std::array<uint8_t, Palette::kMost>;

    enum Filter : uint8_t { kNone = 0, kSub = 1, kUp = 2 };

    // Puts the samples of eight pixels, or of the last of a line, into as many bits as they have,
    // the first ones highest.
    template<int kDepth>
    void packBlock(const uint8_t *numbers, int32_t count, const Samples &samples, uint8_t *out)
    {
        uint64_t bits = 0;
        for (int32_t i = 0; i < count; ++i)
            bits = bits << kDepth | samples[numbers[i]];
        bits <<= (8 - count) * kDepth;
        for (int i = kDepth - 1; i >= 0; --i, bits >>= 8)
            out[i] = static_cast<uint8_t>(bits);
    }

    // A line of numbers, which may begin behind the place of the samples in the same block.
    template<int kDepth>
    void packLine(const uint8_t *numbers, int32_t width, const Samples &samples, uint8_t *out)
    {
        std::array<uint8_t, size_t(kDepth)> block{};
        uint64_t last = 0;
        int32_t x = 0;
        for (; x + 8 <= width; x += 8, out += kDepth) {
            uint64_t pixels = 0;
            std::memcpy(&pixels, numbers + x, sizeof pixels);
            // Much of most pictures is of one colour.
            if (pixels != last || x == 0)
                packBlock<kDepth>(numbers + x, 8, samples, block.data());
            last = pixels;
            std::memcpy(out, block.data(), block.size());
        }
        if (x < width) {
            packBlock<kDepth>(numbers + x, width - x, samples, block.data());
            std::copy_n(block.data(), ((width - x) * kDepth + 7) / 8, out);
        }
    }

    auto packerOf(int depth)
    {
        return depth == 1    ? packLine<1>
                : depth == 2 ? packLine<2>
                : depth == 4 ? packLine<4>
                             : packLine<8>;
    }

    // The samples of the indices of a bitmap.
    Samples samplesOfIndices(const Bitmap &bitmap, const PngLayout &layout)
    {
        Samples samples{};
        for (size_t i = 0; i < bitmap.colours().size(); ++i)
            samples[i] = layout.samples[layout.palette.numberOf(bitmap.colours()[i])];
        return samples;
    }

    // Two colours take one bit here, too, if not the same one.
    void copyBits(const Bitmap &bitmap, const Samples &samples, uint8_t *out)
    {
        const int kept = samples[0] != samples[1] ? 0xFF : 0;
        const int flipped = samples[0] != 0 ? 0xFF : 0;
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            const uint8_t *const line = bitmap.line(y);
            *out++ = kNone;
            out = std::transform(line, line + bitmap.lineBytes(), out, [=](uint8_t byte) {
                return static_cast<uint8_t>((byte & kept) ^ flipped);
            });
        }
    }

    // Samples of a palette or of few shades of grey, without filters: neighbours in a colour table
    // or in one byte have nothing in common, and what came with a table is no photograph.
    const uint8_t *packLines(const Bitmap &bitmap, const PngLayout &layout, PngBlock &block)
    {
        const int64_t lineBytes = layout.lineBytes(bitmap.width());
        const int32_t width = bitmap.width();
        const auto pack = packerOf(layout.depth);
        const Samples samples =
                bitmap.isIndexed() ? samplesOfIndices(bitmap, layout) : layout.samples;
        // Numbers of colours take a byte each, so that their samples go into their place.
        uint8_t *out = bitmap.isIndexed()
                ? block.room(size_t(lineBytes + 1) * size_t(bitmap.height()))
                : block.bytes();
        if (bitmap.format() == PixelFormat::Indexed1) {
            copyBits(bitmap, samples, out);
            return block.bytes();
        }
        const uint8_t *numbers = out + 1;
        for (int32_t y = 0; y < bitmap.height(); ++y, out += lineBytes + 1, numbers += width + 1) {
            pack(bitmap.isIndexed() ? bitmap.line(y) : numbers, width, samples, out + 1);
            *out = kNone;
        }
        return block.bytes();
    }

    // The channels of a line, red first.
    template<int kBytes>
    void copyColours(const Bitmap &bitmap, int32_t y, uint8_t *out)
    {
        const int step = bitsPerPixel(bitmap.format()) / 8;
        const uint8_t *pixel = bitmap.line(y);
        for (int32_t x = 0; x < bitmap.width(); ++x, pixel += step, out += kBytes) {
            out[0] = pixel[2];
            out[1] = pixel[1];
            out[2] = pixel[0];
            if constexpr (kBytes == 4)
                out[3] = pixel[3];
        }
    }

    void copyLine(const Bitmap &bitmap, int32_t y, const PngLayout &layout, const uint8_t *numbers,
                  uint8_t *out)
    {
        if (layout.colours == PngColours::Grey)
            packLine<8>(numbers, bitmap.width(), layout.samples, out);
        else if (layout.colours == PngColours::Rgba)
            copyColours<4>(bitmap, y, out);
        else
            copyColours<3>(bitmap, y, out);
    }

    // How far a byte is from zero, either way around.
    unsigned distance(int difference)
    {
        return static_cast<unsigned>(std::abs(static_cast<int8_t>(difference)));
    }

    // The filter whose bytes are nearest to zero, which is what compresses best as a rule.
    // @param line, above  with as many zeros before them as a pixel has bytes
    Filter bestFilter(const uint8_t *line, const uint8_t *above, int64_t size, int pixelBytes)
    {
        std::array<uint64_t, 3> sums{};
        constexpr int64_t kBlock = 4096; // whose sums fit into 32 bits, which vectors can hold
        for (int64_t start = 0; start < size; start += kBlock) {
            unsigned none = 0;
            unsigned sub = 0;
            unsigned up = 0;
            const int64_t end = std::min(size, start + kBlock);
            for (int64_t i = start; i < end; ++i) {
                none += distance(line[i]);
                sub += distance(line[i] - line[i - pixelBytes]);
                up += distance(line[i] - above[i]);
            }
            sums[kNone] += none;
            sums[kSub] += sub;
            sums[kUp] += up;
        }
        return Filter(std::min_element(sums.begin(), sums.end()) - sums.begin());
    }

    void applyFilter(Filter filter, const uint8_t *line, const uint8_t *above, int64_t size,
                     int pixelBytes, uint8_t *out)
    {
        if (filter == kNone) {
            std::memcpy(out, line, size_t(size));
            return;
        }
        const uint8_t *const other = filter == kSub ? line - pixelBytes : above;
        for (int64_t i = 0; i < size; ++i)
            out[i] = static_cast<uint8_t>(line[i] - other[i]);
    }

    // What has no table, each line with its best filter. Shades of grey are in the block.
    void filterLines(const Bitmap &bitmap, const PngLayout &layout, uint8_t *out)
    {
        const int64_t lineBytes = layout.lineBytes(bitmap.width());
        const int pixelBytes = layout.pixelBits() / 8;
        std::vector<uint8_t> lines(size_t(2 * (lineBytes + pixelBytes)));
        uint8_t *line = lines.data() + pixelBytes;
        uint8_t *above = line + lineBytes + pixelBytes;
        for (int32_t y = 0; y < bitmap.height(); ++y, out += lineBytes + 1) {
            const bool isRepeated = y > 0
                    && std::memcmp(bitmap.line(y), bitmap.line(y - 1), size_t(bitmap.lineBytes()))
                            == 0;
            if (isRepeated && above[0] != 0) { // of black lines all filters make zeros
                out[0] = kUp;
                std::memset(out + 1, 0, size_t(lineBytes));
                continue;
            }
            copyLine(bitmap, y, layout, out + 1, line);
            const Filter filter = bestFilter(line, above, lineBytes, pixelBytes);
            out[0] = filter;
            applyFilter(filter, line, above, lineBytes, pixelBytes, out + 1);
            std::swap(line, above);
        }
    }

} // namespace

const uint8_t *makePngLines(const Bitmap &bitmap, const PngLayout &layout, PngBlock &block)
{
    if (bitmap.isIndexed() || layout.colours == PngColours::Indexed || layout.pixelBits() < 8)
        return packLines(bitmap, layout, block);
    const size_t lineBytes = size_t(layout.lineBytes(bitmap.width())) + 1;
    uint8_t *const lines = block.room(lineBytes * size_t(bitmap.height()));
    filterLines(bitmap, layout, lines);
    return lines;
}

} // namespace svgtool
