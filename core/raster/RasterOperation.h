#pragma once

#include "core/raster/Bitmap.h"

#include <cstdint>
#include <optional>

namespace svgtool {

/// A ternary raster operation ([MS-WMF] 2.1.1.31): how pattern, source and destination make up the
/// pixels of the destination, bit by bit.
///
/// A document cannot ask what is painted beneath, so an operation is expressed by what it leaves
/// to be seen: what it paints whatever lies beneath is opaque, what it leaves alone is transparent.
class RasterOperation
{
public:
    static constexpr uint32_t kSourceCopy = 0x00CC0020;

    /// @param rop  as a record holds it; its third byte is the operation
    explicit constexpr RasterOperation(uint32_t rop) : m_index(static_cast<uint8_t>(rop >> 16)) { }

    constexpr bool operator==(const RasterOperation &) const = default;

    // Each bit of the index is the result for one combination of pattern, source and destination.
    constexpr bool usesPattern() const { return ((m_index >> 4 ^ m_index) & 0x0F) != 0; }
    constexpr bool usesSource() const { return ((m_index >> 2 ^ m_index) & 0x33) != 0; }
    constexpr bool usesDestination() const { return ((m_index >> 1 ^ m_index) & 0x55) != 0; }

    /// The same of an operation without a source, with the source in the place of the pattern.
    constexpr RasterOperation withPatternAsSource() const
    {
        const uint32_t clear = m_index & 3, set = m_index >> 4 & 3;
        return RasterOperation((clear | set << 2 | clear << 4 | set << 6) << 16);
    }

    /// The result for each bit of the three operands.
    constexpr uint32_t apply(uint32_t pattern, uint32_t source, uint32_t destination) const
    {
        uint32_t result = 0;
        for (int i = 0; i < 8; ++i) {
            if ((m_index >> i & 1) != 0)
                result |= (i & 4 ? pattern : ~pattern) & (i & 2 ? source : ~source)
                        & (i & 1 ? destination : ~destination);
        }
        return result;
    }

    /// What one pixel leaves to be seen: a colour, opaque or transparent; or nothing when it is a
    /// mixture with what lies beneath.
    std::optional<Argb> seen(Argb pattern, Argb source) const;

private:
    uint8_t m_index;
};

namespace RasterOperations {
    constexpr RasterOperation SourceCopy{ RasterOperation::kSourceCopy };
    constexpr RasterOperation SourceAnd{ 0x008800C6 };
    constexpr RasterOperation SourcePaint{ 0x00EE0086 };
    constexpr RasterOperation SourceInvert{ 0x00660046 };
}

/// Turns the pixels of @p bitmap into what @p operation leaves to be seen.
///
/// Pixels that would be mixed with what lies beneath are painted as they are; but a grey bitmap
/// that is combined by AND darkens, so it becomes black as opaque as it is dark.
/// @param pattern  colour of the brush
/// @return whether every pixel is exact on every ground
bool applyRasterOperation(Bitmap &bitmap, RasterOperation operation, Argb pattern);

/// Makes the pixels of this colour transparent.
void clearColour(Bitmap &bitmap, Argb colour);

/// Two pictures are laid over each other only up to this many pixels: both are widened to 32 bits,
/// which is a multiple of what a file need have for them.
constexpr int64_t kLayeredPixels = int64_t(16) << 20;

/// Takes pixel by pixel from @p bitmap where @p mask has a 1, and from @p other where it has a 0.
/// @param mask  Indexed1, and both bitmaps, of one size
void chooseByMask(Bitmap &bitmap, const Bitmap &other, const Bitmap &mask);

/// Whether all pixels are black or white, and of a bitmap of two colours both of these.
bool isBlackAndWhite(const Bitmap &bitmap);

/// The picture that a mask, painted by AND, and @p bitmap, painted over it by OR or XOR, leave:
/// where the mask is black the pixels of @p bitmap, elsewhere those of them that are not black.
/// @param mask  black and white; scaled to the bitmap's size, or the bitmap to its size when that
///              is a single pixel
Bitmap combineWithMask(const Bitmap &bitmap, const Bitmap &mask);

/// The same with a bitmap that was painted by XOR before the mask, too: its pixels where the mask
/// is black, nothing elsewhere.
Bitmap stencil(const Bitmap &bitmap, const Bitmap &mask);

} // namespace svgtool
