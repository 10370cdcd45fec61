#pragma once

#include "core/raster/Bitmap.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace svgtool {

/// Up to 256 colours, numbered in the order in which they come.
class Palette
{
public:
    static constexpr size_t kMost = 256;

    /// The number of @p colour, which is added unless it is there; nothing when there is no room.
    std::optional<uint8_t> add(Argb colour);
    /// The number of a colour that has been added; any number for others.
    uint8_t numberOf(Argb colour) const { return m_numbers[slotOf(colour)]; }
    const std::vector<Argb> &colours() const { return m_colours; }

private:
    static constexpr size_t kSlots = 4 * kMost; ///< so that most colours are in their first one

    /// Where the colour is, or where it belongs.
    size_t slotOf(Argb colour) const;

    std::vector<Argb> m_colours;
    std::array<uint8_t, kSlots> m_numbers{};
    std::array<bool, kSlots> m_isTaken{};
};

/// How a PNG file holds pixels.
enum class PngColours : uint8_t { Grey = 0, Rgb = 2, Indexed = 3, Rgba = 6 };

/// The smallest form of a PNG file in which no pixel of a bitmap changes: few colours as indices of
/// 1, 2, 4 or 8 bits, shades of grey without a table, and alpha only where it is used.
struct PngLayout
{
    PngColours colours = PngColours::Rgb;
    int depth = 8; ///< bits of a sample
    Palette palette; ///< of Indexed, and of Grey
    std::array<uint8_t, Palette::kMost> samples{}; ///< of each number in the palette

    /// Bits of a pixel.
    int pixelBits() const;
    /// Bytes of a line, behind the number of its filter.
    int64_t lineBytes(int32_t width) const { return (int64_t(width) * pixelBits() + 7) / 8; }
};

/// A block of bytes that serves one picture after the other: memory that is new takes the kernel
/// longer than the pixels of a page take to be compressed.
class PngBlock
{
public:
    /// @return room for so many bytes, which are anything
    /// @throws std::bad_alloc
    uint8_t *room(size_t size);
    uint8_t *bytes() { return m_bytes.get(); }
    /// Gives back what is worth it.
    void trim();

private:
    std::unique_ptr<uint8_t[]> m_bytes;
    size_t m_size = 0;
};

/// @param[out] block  of pixels that are no indices, the number of each in the palette, with the
///                    lines a byte apart and behind a byte; if there are few enough colours
/// @throws std::bad_alloc
PngLayout choosePngLayout(const Bitmap &bitmap, PngBlock &block);

} // namespace svgtool
