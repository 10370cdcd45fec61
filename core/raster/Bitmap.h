#pragma once

#include "core/geometry/IntRect.h"
#include "core/raster/Colour.h"

#include <bitset>
#include <cstdint>
#include <vector>

namespace svgtool {

/// How a bitmap keeps its pixels. A line begins on a byte, and its pixels follow each other without
/// gaps.
enum class PixelFormat : uint8_t {
    Indexed1, ///< eight pixels a byte, the first in the highest bit; bits behind the last are 0
    Indexed8, ///< a byte
    Bgr24, ///< blue, green, red
    Bgr32, ///< blue, green, red and a byte without meaning
    Bgra32, ///< blue, green, red, alpha
};

constexpr int bitsPerPixel(PixelFormat format)
{
    constexpr int kBits[] = { 1, 8, 24, 32, 32 };
    return kBits[static_cast<int>(format)];
}

/// Pixels in memory, with the top line first: a plain value, which copies its pixels when copied.
///
/// Whoever gives an indexed bitmap its pixels gives it a colour for each of their indices, too.
/// Bitmaps of 4 bits a pixel are kept as 8; those of 16 as 24, or as 32 with alpha.
class Bitmap
{
public:
    /// Of no pixels, which is null.
    Bitmap() = default;
    /// Of zero bytes, and with no colours.
    /// @param size  1 by 1 or larger
    /// @throws std::bad_alloc  when there is no memory for so many
    Bitmap(PixelFormat format, IntSize size);
    /// Of pixels that somebody else owns, who keeps them as long as this bitmap, its copies and its
    /// parts are there. They are copied when they are to be changed.
    /// @param top   the first byte of the top line
    /// @param step  bytes from a line to the one below it, which can be less than 0
    static Bitmap borrowed(PixelFormat format, IntSize size, const uint8_t *top, int64_t step);

    /// Copies what is borrowed.
    void own();

    bool isNull() const { return m_size.width == 0; }
    PixelFormat format() const { return m_format; }
    bool isIndexed() const { return m_format <= PixelFormat::Indexed8; }
    IntSize size() const { return m_size; }
    int32_t width() const { return m_size.width; }
    int32_t height() const { return m_size.height; }
    int64_t pixelCount() const { return int64_t(m_size.width) * m_size.height; }

    int64_t lineBytes() const { return m_lineBytes; }
    /// The bytes of line @p y, from 0 for the top one.
    uint8_t *line(int32_t y)
    {
        own();
        return m_bytes.data() + y * m_step;
    }
    const uint8_t *line(int32_t y) const
    {
        return (m_borrowed != nullptr ? m_borrowed : m_bytes.data()) + y * m_step;
    }
    /// The index of a pixel of an indexed bitmap.
    uint8_t indexAt(int32_t x, int32_t y) const;

    /// The colour of each index; of no meaning unless indexed.
    std::vector<Argb> &colours() { return m_colours; }
    const std::vector<Argb> &colours() const { return m_colours; }
    /// The indices that pixels have; none unless indexed.
    std::bitset<256> usedIndices() const;

    /// Room for the colours of a line.
    std::vector<Argb> lineBuffer() const { return std::vector<Argb>(size_t(m_size.width)); }
    /// The colours of line @p y.
    /// @param[out] colours  width() of them
    void readLine(int32_t y, Argb *colours) const;
    /// The colour of a pixel.
    Argb colourAt(int32_t x, int32_t y) const;
    /// Line @p y of a Bgra32.
    void writeLine(int32_t y, const Argb *colours);

    /// The pixels of @p part, borrowed if these are; where that lies outside they are of zero
    /// bytes.
    /// @param part  1 by 1 or larger
    Bitmap cut(const IntRect &part) const;
    /// Turns left and right round, top and bottom, or both.
    void mirror(bool horizontally, bool vertically);
    /// Makes a Bgra32 opaque.
    void dropAlpha() { m_format = PixelFormat::Bgr32; }
    /// The same pixels as Bgra32.
    Bitmap widened() const;
    /// Whether format, size and all pixels agree; of indexed bitmaps their colours.
    bool operator==(const Bitmap &other) const;

private:
    std::vector<uint8_t> m_bytes; ///< none of a bitmap that borrows them
    const uint8_t *m_borrowed = nullptr; ///< the top line
    std::vector<Argb> m_colours;
    IntSize m_size;
    int64_t m_lineBytes = 0;
    int64_t m_step = 0; ///< from a line to the next
    PixelFormat m_format = PixelFormat::Indexed1;
};

} // namespace svgtool
