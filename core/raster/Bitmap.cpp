#include "core/raster/Bitmap.h"

#include "core/base/ByteOrder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace svgtool {

namespace {

    int64_t bytesOfLine(PixelFormat format, int32_t width)
    {
        return (int64_t(width) * bitsPerPixel(format) + 7) / 8;
    }

    // How many bytes pixels of this size take; all of them can be addressed.
    size_t bytesOf(PixelFormat format, IntSize size)
    {
        const int64_t lineBytes = bytesOfLine(format, size.width);
        if (lineBytes > std::numeric_limits<ptrdiff_t>::max() / size.height)
            throw std::bad_alloc();
        return size_t(lineBytes * size.height);
    }

    bool bitOf(const uint8_t *line, int64_t x)
    {
        return (line[x / 8] & 0x80 >> x % 8) != 0;
    }

    void setBit(uint8_t *line, int64_t x)
    {
        line[x / 8] = static_cast<uint8_t>(line[x / 8] | 0x80 >> x % 8);
    }

    // Eight pixels in the opposite order.
    constexpr auto kReversed = [] {
        std::array<uint8_t, 256> reversed{};
        for (unsigned byte = 0; byte < reversed.size(); ++byte) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                if ((byte >> bit & 1) != 0)
                    reversed[byte] = static_cast<uint8_t>(reversed[byte] | 0x80U >> bit);
            }
        }
        return reversed;
    }();

    void reverseBits(uint8_t *line, int32_t width)
    {
        const int64_t bytes = (int64_t(width) + 7) / 8;
        std::reverse(line, line + bytes);
        std::transform(line, line + bytes, line, [](uint8_t byte) { return kReversed[byte]; });
        // What was behind the last pixel is now before the first.
        const int shift = static_cast<int>(bytes * 8 - width);
        if (shift == 0)
            return;
        for (int64_t i = 0; i < bytes; ++i) {
            const int next = i + 1 < bytes ? line[i + 1] : 0;
            line[i] = static_cast<uint8_t>(line[i] << shift | next >> (8 - shift));
        }
    }

    template<int kBytes>
    void reversePixels(uint8_t *line, int32_t width)
    {
        uint8_t *left = line;
        uint8_t *right = line + (int64_t(width) - 1) * kBytes;
        for (; left < right; left += kBytes, right -= kBytes)
            std::swap_ranges(left, left + kBytes, right);
    }

    void reverseLine(PixelFormat format, uint8_t *line, int32_t width)
    {
        switch (format) {
        case PixelFormat::Indexed1:
            return reverseBits(line, width);
        case PixelFormat::Indexed8:
            return reversePixels<1>(line, width);
        case PixelFormat::Bgr24:
            return reversePixels<3>(line, width);
        case PixelFormat::Bgr32:
        case PixelFormat::Bgra32:
            return reversePixels<4>(line, width);
        }
    }

    void noteIndices(const uint8_t *pixels, int32_t width, std::array<bool, 256> &isUsed)
    {
        // Much of most pictures is of one colour, which is passed over eight pixels at a time.
        constexpr int32_t kBlock = 8;
        uint64_t last = 0;
        int32_t x = 0;
        for (; x + kBlock <= width; x += kBlock) {
            uint64_t block = 0;
            std::memcpy(&block, pixels + x, sizeof block);
            if (block == last && x > 0)
                continue;
            last = block;
            for (int32_t i = 0; i < kBlock; ++i)
                isUsed[pixels[x + i]] = true;
        }
        for (; x < width; ++x)
            isUsed[pixels[x]] = true;
    }

    void noteBits(const uint8_t *pixels, int32_t width, std::array<bool, 256> &isUsed)
    {
        const int32_t whole = width / 8;
        const auto isAny = [=](uint8_t byte) {
            return std::any_of(pixels, pixels + whole, [byte](uint8_t it) { return it != byte; });
        };
        isUsed[0] = isUsed[0] || isAny(0xFF);
        isUsed[1] = isUsed[1] || isAny(0);
        for (int32_t x = whole * 8; x < width; ++x)
            isUsed[bitOf(pixels, x) ? 1 : 0] = true;
    }

    Argb load32(const uint8_t *bytes)
    {
        Argb colour = 0;
        std::memcpy(&colour, bytes, sizeof colour);
        return fromLittleEndian(colour);
    }

} // namespace

Bitmap::Bitmap(PixelFormat format, IntSize size)
    : m_bytes(bytesOf(format, size)), m_size(size), m_lineBytes(bytesOfLine(format, size.width)),
      m_step(m_lineBytes), m_format(format)
{
}

Bitmap Bitmap::borrowed(PixelFormat format, IntSize size, const uint8_t *top, int64_t step)
{
    Bitmap bitmap;
    bitmap.m_borrowed = top;
    bitmap.m_size = size;
    bitmap.m_lineBytes = bytesOfLine(format, size.width);
    bitmap.m_step = step;
    bitmap.m_format = format;
    return bitmap;
}

void Bitmap::own()
{
    if (m_borrowed == nullptr)
        return;
    std::vector<uint8_t> bytes;
    bytes.reserve(bytesOf(m_format, m_size));
    for (int32_t y = 0; y < height(); ++y) {
        const uint8_t *const from = std::as_const(*this).line(y);
        bytes.insert(bytes.end(), from, from + m_lineBytes);
    }
    m_bytes = std::move(bytes);
    m_borrowed = nullptr;
    m_step = m_lineBytes;
}

uint8_t Bitmap::indexAt(int32_t x, int32_t y) const
{
    return m_format == PixelFormat::Indexed1 ? uint8_t(bitOf(line(y), x)) : line(y)[x];
}

std::bitset<256> Bitmap::usedIndices() const
{
    // A byte each, since a bitset's bit would be read and written again for each pixel.
    std::array<bool, 256> isUsed{};
    for (int32_t y = 0; isIndexed() && y < height(); ++y) {
        if (m_format == PixelFormat::Indexed8)
            noteIndices(line(y), width(), isUsed);
        else
            noteBits(line(y), width(), isUsed);
    }
    std::bitset<256> used;
    for (size_t i = 0; i < isUsed.size(); ++i)
        used[i] = isUsed[i];
    return used;
}

void Bitmap::readLine(int32_t y, Argb *colours) const
{
    const uint8_t *pixel = line(y);
    switch (m_format) {
    case PixelFormat::Indexed1:
        for (int32_t x = 0; x < width(); ++x)
            colours[x] = m_colours[bitOf(pixel, x) ? 1 : 0];
        break;
    case PixelFormat::Indexed8:
        for (int32_t x = 0; x < width(); ++x)
            colours[x] = m_colours[pixel[x]];
        break;
    case PixelFormat::Bgr24:
        for (int32_t x = 0; x < width(); ++x, pixel += 3)
            colours[x] = argb(pixel[2], pixel[1], pixel[0]);
        break;
    case PixelFormat::Bgr32:
        for (int32_t x = 0; x < width(); ++x, pixel += 4)
            colours[x] = load32(pixel) | kAlphaBits;
        break;
    case PixelFormat::Bgra32:
        for (int32_t x = 0; x < width(); ++x, pixel += 4)
            colours[x] = load32(pixel);
        break;
    }
}

Argb Bitmap::colourAt(int32_t x, int32_t y) const
{
    if (isIndexed())
        return m_colours[indexAt(x, y)];
    const uint8_t *const pixel = line(y) + int64_t(x) * (bitsPerPixel(m_format) / 8);
    const uint8_t alpha = m_format == PixelFormat::Bgra32 ? pixel[3] : uint8_t(255);
    return argb(pixel[2], pixel[1], pixel[0], alpha);
}

void Bitmap::writeLine(int32_t y, const Argb *colours)
{
    uint8_t *pixel = line(y);
    for (int32_t x = 0; x < width(); ++x, pixel += 4) {
        const Argb bytes = fromLittleEndian(colours[x]); // which is its own inverse
        std::memcpy(pixel, &bytes, sizeof bytes);
    }
}

Bitmap Bitmap::cut(const IntRect &part) const
{
    const bool isInside = part.x >= 0 && part.y >= 0 && part.width <= width() - part.x
            && part.height <= height() - part.y;
    if (m_borrowed != nullptr && isInside && m_format != PixelFormat::Indexed1) {
        const int64_t pixelBytes = bitsPerPixel(m_format) / 8;
        Bitmap result = borrowed(m_format, { part.width, part.height },
                                 line(part.y) + part.x * pixelBytes, m_step);
        result.m_colours = m_colours;
        return result;
    }
    Bitmap result(m_format, { part.width, part.height });
    result.m_colours = m_colours;
    const int64_t from = std::max<int64_t>(part.x, 0);
    const int64_t to = std::min<int64_t>(int64_t(part.x) + part.width, width());
    const int64_t bottom = std::min<int64_t>(int64_t(part.y) + part.height, height());
    if (from >= to)
        return result;
    for (int64_t y = std::max<int64_t>(part.y, 0); y < bottom; ++y) {
        const uint8_t *const source = line(int32_t(y));
        uint8_t *const target = result.line(int32_t(y - part.y));
        if (m_format == PixelFormat::Indexed1) {
            for (int64_t x = from; x < to; ++x) {
                if (bitOf(source, x))
                    setBit(target, x - part.x);
            }
            continue;
        }
        const int64_t bytes = bitsPerPixel(m_format) / 8;
        std::memcpy(target + (from - part.x) * bytes, source + from * bytes,
                    size_t((to - from) * bytes));
    }
    return result;
}

void Bitmap::mirror(bool horizontally, bool vertically)
{
    for (int32_t y = 0; horizontally && y < height(); ++y)
        reverseLine(m_format, line(y), width());
    if (vertically && m_borrowed != nullptr) {
        m_borrowed = std::as_const(*this).line(height() - 1);
        m_step = -m_step;
        return;
    }
    for (int32_t y = 0; vertically && y < height() / 2; ++y)
        std::swap_ranges(line(y), line(y) + m_lineBytes, line(height() - 1 - y));
}

Bitmap Bitmap::widened() const
{
    if (m_format == PixelFormat::Bgra32)
        return *this;
    Bitmap result(PixelFormat::Bgra32, m_size);
    std::vector<Argb> colours = lineBuffer();
    for (int32_t y = 0; y < height(); ++y) {
        readLine(y, colours.data());
        result.writeLine(y, colours.data());
    }
    return result;
}

bool Bitmap::operator==(const Bitmap &other) const
{
    if (m_format != other.m_format || m_size != other.m_size)
        return false;
    std::vector<Argb> ours = lineBuffer();
    std::vector<Argb> theirs = lineBuffer();
    const bool sameColours = !isIndexed() || m_colours == other.m_colours;
    for (int32_t y = 0; y < height(); ++y) {
        if (sameColours && std::equal(line(y), line(y) + m_lineBytes, other.line(y)))
            continue;
        readLine(y, ours.data());
        other.readLine(y, theirs.data());
        if (ours != theirs)
            return false;
    }
    return true;
}

} // namespace svgtool
