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
        void paint(uint8_t index)
        {
            if (m_x < m_width && !isDone()) {
                m_pixels[m_y * m_width + m_x] = index;
                m_used.set(index);
                ++m_painted;
            }
            ++m_x;
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

    // Pixel number i of a run: of two alternating nibbles, or of one byte.
    uint8_t indexOf(RunDepth depth, uint8_t byte, int i)
    {
        if (depth == RunDepth::Bits8)
            return byte;
        return i % 2 == 0 ? byte >> 4 : byte & 0x0F;
    }

    // The bytes after an escape that names a count of literal pixels, padded to a 16-bit border.
    int64_t paintLiteral(RunPainter &painter, RunDepth depth, ByteView bytes, int count)
    {
        for (int i = 0; i < count; ++i) {
            const int64_t position = depth == RunDepth::Bits8 ? i : i / 2;
            if (position >= bytes.size)
                break;
            painter.paint(indexOf(depth, uint8_t(bytes.data[position]), i));
        }
        const int64_t used = depth == RunDepth::Bits8 ? count : (count + 1) / 2;
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
                for (int i = 0; i < count; ++i)
                    painter.paint(indexOf(depth, value, i));
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
