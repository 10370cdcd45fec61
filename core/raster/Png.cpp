#include "core/raster/Png.h"

#include "core/base/ByteOrder.h"
#include "core/raster/PngLines.h"

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
    const PngLayout layout = choosePngLayout(bitmap, m_block);
    const int64_t lineBytes = layout.lineBytes(bitmap.width()) + 1;
    constexpr int64_t kMost = std::numeric_limits<ptrdiff_t>::max() / 2;
    if (lineBytes > kMost / bitmap.height())
        throw std::bad_alloc();
    const auto size = static_cast<size_t>(lineBytes * bitmap.height());
    const uint8_t *const lines = makePngLines(bitmap, layout, m_block);

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
            libdeflate_zlib_compress(compressor, lines, size, writer.position(), room);
    constexpr auto kLongestChunk = size_t(std::numeric_limits<int32_t>::max());
    if (compressed == 0 || compressed > kLongestChunk)
        throw std::bad_alloc();
    m_block.trim();
    writer.skip(compressed);
    writer.end();
    writer.begin("IEND");
    writer.end();
    file.size = writer.position() - file.bytes.get();
    return file;
}

} // namespace svgtool
