#include "core/raster/RunLengths.h"

#include <algorithm>
#include <bitset>
#include <cstring>
#include <vector>

namespace svgtool {

namespace {

    // Where the next pixel goes, and what has been painted.
    class RunPainter
    {
    public:
        explicit RunPainter(Bitmap &bitmap)
            : m_pixels(bitmap.line(0)), m_width(bitmap.width()), m_height(bitmap.height()),
              m_y(m_height - 1)
        {
        }

        bool isDone() const { return m_y < 0; }
        // So many pixels, of two indices by turns.
        void paint(uint8_t first, uint8_t second, int count)
        {
            const auto seen = isDone() ? 0 : int(std::clamp<int64_t>(m_width - m_x, 0, count));
            if (seen > 0) {
                uint8_t *const pixels = m_pixels + m_y * m_width + m_x;
                std::memset(pixels, first, size_t(seen));
                for (int i = 1; first != second && i < seen; i += 2)
                    pixels[i] = second;
                m_used.set(first);
                m_used.set(seen > 1 ? second : first);
                m_painted += seen;
            }
            m_x += count;
        }
        void move(int right, int up)
        {
            m_x += right;
            m_y -= up;
        }
        void endLine()
        {
            m_x = 0;
            --m_y;
        }
        bool hasPaintedAll() const { return m_painted == m_width * m_height; }
        bool isUsed(int index) const { return m_used.test(size_t(index)); }

    private:
        uint8_t *m_pixels;
        int64_t m_width;
        int64_t m_height;
        int64_t m_x = 0;
        int64_t m_y;
        int64_t m_painted = 0;
        std::bitset<256> m_used;
    };

    // So many pixels of one byte: an index, or two of half a byte by turns.
    void paintByte(RunPainter &painter, RunDepth depth, uint8_t byte, int count)
    {
        if (depth == RunDepth::Bits8)
            painter.paint(byte, byte, count);
        else
            painter.paint(byte >> 4, byte & 0x0F, count);
    }

    // The bytes after an escape that names a count of literal pixels, padded to a 16-bit border.
    int64_t paintLiteral(RunPainter &painter, RunDepth depth, ByteView bytes, int count)
    {
        const int perByte = depth == RunDepth::Bits8 ? 1 : 2;
        const int64_t used = (count + perByte - 1) / perByte;
        for (int64_t i = 0; i < std::min(used, bytes.size); ++i, count -= perByte)
            paintByte(painter, depth, uint8_t(bytes.data[i]), std::min(count, perByte));
        return (used + 1) / 2 * 2;
    }

    void runThrough(RunPainter &painter, RunDepth depth, ByteView bytes)
    {
        int64_t position = 0;
        while (position + 2 <= bytes.size && !painter.isDone()) {
            const auto count = uint8_t(bytes.data[position]);
            const auto value = uint8_t(bytes.data[position + 1]);
            position += 2;
            if (count > 0) {
                paintByte(painter, depth, value, count);
            } else if (value == 0) {
                painter.endLine();
            } else if (value == 1) {
                return;
            } else if (value == 2) {
                const auto step = slice(bytes, position, 2);
                if (!step)
                    return;
                painter.move(uint8_t(step->data[0]), uint8_t(step->data[1]));
                position += 2;
            } else {
                position += paintLiteral(painter, depth, tail(bytes, position), value);
            }
        }
    }

} // namespace

void decodeRuns(ByteView bytes, RunDepth depth, Bitmap &bitmap)
{
    // Which index is free shows only at the end, so the first pass marks nothing and the second
    // paints over it, where anything was skipped.
    RunPainter first(bitmap);
    runThrough(first, depth, bytes);
    if (first.hasPaintedAll())
        return;
    std::vector<Argb> &colours = bitmap.colours();
    if (colours.size() < 256)
        colours.push_back(kBlack);
    auto unused = static_cast<int>(colours.size()) - 1;
    while (unused >= 0 && first.isUsed(unused))
        --unused;
    if (unused < 0)
        return;
    colours[size_t(unused)] = kClear;
    std::memset(bitmap.line(0), unused, size_t(bitmap.pixelCount()));
    RunPainter second(bitmap);
    runThrough(second, depth, bytes);
}

} // namespace svgtool
