#include "core/raster/Png.h"

#include "core/base/ByteOrder.h"
#include "core/raster/PngLayout.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

namespace svgtool {

namespace {

    // Chosen by bench/PngBenchmark.cpp; see docs/performance.md. What is as short as this takes the
    // compressor longer to prepare for than it is worth, and is stored.
    constexpr int kLevel = 1;
    constexpr size_t kShort = 320;
    constexpr int kStoring = 0; // the level

    // The samples of a line, as a file has them before they are filtered.
    class LineMaker
    {
    public:
        LineMaker(const Bitmap &bitmap, const PngLayout &layout)
            : m_bitmap(bitmap), m_layout(layout)
        {
            if (!bitmap.isIndexed())
                m_colours = bitmap.lineBuffer();
            for (size_t i = 0; bitmap.isIndexed() && i < bitmap.colours().size(); ++i)
                m_samples[i] = layout.samples[layout.palette.numberOf(bitmap.colours()[i])];
        }

        void make(int32_t y, uint8_t *out)
        {
            switch (m_layout.colours) {
            case PngColours::Rgb:
                return makeColours<3>(y, out);
            case PngColours::Rgba:
                return makeColours<4>(y, out);
            default:
                return makeSamples(y, out);
            }
        }

    private:
        template<int kBytes>
        void makeColours(int32_t y, uint8_t *out)
        {
            m_bitmap.readLine(y, m_colours.data());
            for (const Argb colour : m_colours) {
                out[0] = redOf(colour);
                out[1] = greenOf(colour);
                out[2] = blueOf(colour);
                if constexpr (kBytes == 4)
                    out[3] = alphaOf(colour);
                out += kBytes;
            }
        }
        void makeSamples(int32_t y, uint8_t *out)
        {
            const uint8_t *const line = m_bitmap.line(y);
            if (m_bitmap.format() == PixelFormat::Indexed1) {
                // Two colours take one bit here, too, if not the same one.
                const int kept = m_samples[0] != m_samples[1] ? 0xFF : 0;
                const int flipped = m_samples[0] != 0 ? 0xFF : 0;
                std::transform(line, line + m_bitmap.lineBytes(), out, [=](uint8_t byte) {
                    return static_cast<uint8_t>((byte & kept) ^ flipped);
                });
            } else if (m_bitmap.format() == PixelFormat::Indexed8) {
                pack(out, [&](int32_t x) { return m_samples[line[x]]; });
            } else {
                m_bitmap.readLine(y, m_colours.data());
                Argb last = m_colours[0];
                uint8_t sample = sampleOf(last);
                pack(out, [&](int32_t x) {
                    const Argb colour = m_colours[size_t(x)];
                    if (colour != last) {
                        last = colour;
                        sample = sampleOf(colour);
                    }
                    return sample;
                });
            }
        }
        uint8_t sampleOf(Argb colour) const
        {
            return m_layout.samples[m_layout.palette.numberOf(colour)];
        }
        // Puts the samples at all x into as many bits as they have, the first ones highest.
        template<class SampleAt>
        void pack(uint8_t *out, SampleAt sampleAt)
        {
            const int depth = m_layout.depth;
            const int32_t width = m_bitmap.width();
            if (depth == 8) {
                for (int32_t x = 0; x < width; ++x)
                    out[x] = sampleAt(x);
                return;
            }
            const int perByte = 8 / depth;
            for (int32_t x = 0; x < width; ++out) {
                unsigned byte = 0;
                const int count = std::min(perByte, width - x);
                for (int i = 0; i < count; ++i, ++x)
                    byte = byte << depth | sampleAt(x);
                *out = static_cast<uint8_t>(byte << (perByte - count) * depth);
            }
        }

        const Bitmap &m_bitmap;
        const PngLayout &m_layout;
        std::vector<Argb> m_colours; ///< of a line
        std::array<uint8_t, Palette::kMost> m_samples{}; ///< of each index of the bitmap
    };

    enum Filter : uint8_t { kNone = 0, kSub = 1, kUp = 2 };

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

    // All lines, each behind the number of its filter.
    void filterLines(const Bitmap &bitmap, const PngLayout &layout, uint8_t *out)
    {
        const int64_t lineBytes = layout.lineBytes(bitmap.width());
        LineMaker maker(bitmap, layout);
        // Neighbours in a colour table or in one byte have nothing in common, and what came with a
        // table is no photograph.
        if (bitmap.isIndexed() || layout.colours == PngColours::Indexed || layout.pixelBits() < 8) {
            for (int32_t y = 0; y < bitmap.height(); ++y, out += lineBytes + 1) {
                out[0] = kNone;
                maker.make(y, out + 1);
            }
            return;
        }
        const int pixelBytes = layout.pixelBits() / 8;
        std::vector<uint8_t> lines(size_t(2 * (lineBytes + pixelBytes)));
        uint8_t *line = lines.data() + pixelBytes;
        uint8_t *above = line + lineBytes + pixelBytes;
        for (int32_t y = 0; y < bitmap.height(); ++y, out += lineBytes + 1) {
            maker.make(y, line);
            const Filter filter = bestFilter(line, above, lineBytes, pixelBytes);
            out[0] = filter;
            applyFilter(filter, line, above, lineBytes, pixelBytes, out + 1);
            std::swap(line, above);
        }
    }

    // Puts the parts of a file one behind the other; there must be room.
    class ChunkWriter
    {
    public:
        explicit ChunkWriter(char *out) : m_at(out) { }

        char *position() const { return m_at; }
        void byte(int value) { *m_at++ = static_cast<char>(value); }
        void number(uint32_t value)
        {
            for (int shift = 24; shift >= 0; shift -= 8)
                byte(static_cast<uint8_t>(value >> shift));
        }
        void text(std::string_view characters)
        {
            m_at = std::copy(characters.begin(), characters.end(), m_at);
        }
        void skip(size_t bytes) { m_at += bytes; }
        // A chunk begins with the length of its contents, which is known when it ends.
        void begin(std::string_view type)
        {
            m_chunk = m_at;
            number(0);
            text(type);
        }
        void end()
        {
            constexpr int kHead = 8;
            char *const behind = m_at;
            const auto size = static_cast<size_t>(behind - m_chunk);
            const uint32_t check = libdeflate_crc32(0, m_chunk + 4, size - 4);
            m_at = m_chunk;
            number(static_cast<uint32_t>(size - kHead));
            m_at = behind;
            number(check);
        }

    private:
        char *m_at;
        char *m_chunk = nullptr;
    };

    void writeHead(ChunkWriter &writer, const Bitmap &bitmap, const PngLayout &layout)
    {
        writer.text("\x89PNG\r\n\x1a\n");
        writer.begin("IHDR");
        writer.number(uint32_t(bitmap.width()));
        writer.number(uint32_t(bitmap.height()));
        writer.byte(layout.depth);
        writer.byte(static_cast<int>(layout.colours));
        for (int i = 0; i < 3; ++i) // compression, filters and order of the lines: the usual ones
            writer.byte(0);
        writer.end();
    }

    void writePalette(ChunkWriter &writer, const std::vector<Argb> &colours)
    {
        writer.begin("PLTE");
        for (const Argb colour : colours) {
            writer.byte(redOf(colour));
            writer.byte(greenOf(colour));
            writer.byte(blueOf(colour));
        }
        writer.end();
        // What is behind the last translucent colour is opaque.
        const auto opaque = std::find_if_not(colours.rbegin(), colours.rend(), isOpaque);
        if (opaque == colours.rend())
            return;
        writer.begin("tRNS");
        std::for_each(colours.begin(), opaque.base(),
                      [&writer](Argb colour) { writer.byte(alphaOf(colour)); });
        writer.end();
    }

} // namespace

void PngEncoder::Free::operator()(libdeflate_compressor *compressor) const
{
    libdeflate_free_compressor(compressor);
}

libdeflate_compressor *PngEncoder::compressorFor(size_t size)
{
    auto &compressor = size <= kShort ? m_storing : m_compressing;
    if (!compressor)
        compressor.reset(libdeflate_alloc_compressor(size <= kShort ? kStoring : kLevel));
    if (!compressor)
        throw std::bad_alloc();
    return compressor.get();
}

PngFile PngEncoder::encode(const Bitmap &bitmap)
{
    const PngLayout layout = choosePngLayout(bitmap);
    const int64_t lineBytes = layout.lineBytes(bitmap.width()) + 1;
    constexpr int64_t kMost = std::numeric_limits<ptrdiff_t>::max() / 2;
    if (lineBytes > kMost / bitmap.height())
        throw std::bad_alloc();
    const auto size = static_cast<size_t>(lineBytes * bitmap.height());
    // Neither block needs its bytes set before they are written.
    const auto filtered = std::make_unique_for_overwrite<uint8_t[]>(size);
    filterLines(bitmap, layout, filtered.get());

    constexpr size_t kAllButPixels =
            8 + 25 + (12 + 3 * Palette::kMost) + (12 + Palette::kMost) + 12 + 12;
    auto *const compressor = compressorFor(size);
    const size_t room = libdeflate_zlib_compress_bound(compressor, size);
    PngFile file;
    file.bytes = std::make_unique_for_overwrite<char[]>(kAllButPixels + room);
    ChunkWriter writer(file.bytes.get());
    writeHead(writer, bitmap, layout);
    if (layout.colours == PngColours::Indexed)
        writePalette(writer, layout.palette.colours());
    writer.begin("IDAT");
    const size_t compressed =
            libdeflate_zlib_compress(compressor, filtered.get(), size, writer.position(), room);
    constexpr auto kLongestChunk = size_t(std::numeric_limits<int32_t>::max());
    if (compressed == 0 || compressed > kLongestChunk)
        throw std::bad_alloc();
    writer.skip(compressed);
    writer.end();
    writer.begin("IEND");
    writer.end();
    file.size = writer.position() - file.bytes.get();
    return file;
}

} // namespace svgtool
