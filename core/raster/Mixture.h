#pragma once

#include "core/raster/Bitmap.h"
#include "core/raster/RasterOperation.h"

#include <optional>

namespace svgtool {

/// What becomes of a pixel that is mixed with what lies beneath: (beneath & keep) ^ flip.
///
/// Every raster operation whose pattern and source are known is of this form, and so are several
/// of them one after the other. Only the bits of colours count.
struct PixelMixture
{
    Argb keep = kColourBits;
    Argb flip = 0;

    constexpr Argb over(Argb beneath) const { return ((beneath & keep) ^ flip) & kColourBits; }
    /// The same whatever lies beneath.
    constexpr bool isOpaque() const { return keep == 0; }
    constexpr bool isNothing() const { return keep == kColourBits && flip == 0; }
    /// This one first, @p next after it.
    constexpr PixelMixture then(PixelMixture next) const
    {
        return { keep & next.keep, (flip & next.keep) ^ next.flip };
    }
    constexpr bool operator==(const PixelMixture &) const = default;
};

constexpr PixelMixture mixtureOf(RasterOperation operation, Argb pattern, Argb source)
{
    const Argb onBlack = operation.apply(pattern, source, 0) & kColourBits;
    const Argb onWhite = operation.apply(pattern, source, kColourBits) & kColourBits;
    return { onBlack ^ onWhite, onBlack };
}

inline constexpr RasterOperation kPatternCopy{ 0x00F00021 };
inline constexpr RasterOperation kNoOperation{ 0x00AA0029 };
inline constexpr RasterOperation kInversion{ 0x00550009 };
inline constexpr RasterOperation kPatternInvert{ 0x005A0049 };
inline constexpr RasterOperation kPatternAnd{ 0x00A000C9 };
inline constexpr RasterOperation kPatternOr{ 0x00FA0089 };

/// The operation of two operands, [MS-EMF] 2.1.26, as one of three that does not use its source.
/// @param mode  1 to 16
constexpr RasterOperation operationOfRop2(uint32_t mode)
{
    const uint32_t truth = (mode - 1) & 0x0F; // bit pattern * 2 + destination
    const uint32_t clear = truth & 3, set = truth >> 2;
    return RasterOperation((clear | clear << 2 | set << 4 | set << 6) << 16);
}

/// A mixture for each pixel: what one or several transfers do to their part of the picture.
class Mixture
{
public:
    /// @param source   not null
    /// @param pattern  of the size of the source, or null to take @p colour for all pixels; nothing
    ///                 changes where it is transparent
    /// @throws std::bad_alloc
    Mixture(const Bitmap &source, RasterOperation operation, Argb colour,
            const Bitmap &pattern = {});

    IntSize size() const { return m_keep.size(); }
    /// Takes the pixels of @p other where @p mask has a 0.
    /// @param mask  Indexed1; both of one size
    void chooseByMask(const Mixture &other, const Bitmap &mask);
    /// Gives it so many pixels, as resampled() does.
    void resample(IntSize size);
    /// Puts @p next after it, with its pixels taken by their place when the sizes differ.
    void then(const Mixture &next);

    /// Whether no pixel depends on what lies beneath, but for those that leave it alone.
    bool isPlain() const { return m_isPlain; }
    /// Whether all bits of each channel that depends on what lies beneath depend alike, so that
    /// multiplying, adding and taking differences do the same as the bits.
    bool isSaturated() const { return m_isSaturated; }
    /// Whether it is OR with the colours of flip(), and whether what is flipped is not kept: then
    /// it is added.
    bool isUnion() const { return m_isUnion; }
    bool isDisjoint() const { return m_isDisjoint; }

    /// The pixels on a ground of these colours: Bgra32, transparent where it stays as it is, or
    /// Bgr32 where it does nowhere.
    /// @param ground  of each pixel; called line by line
    template<class Ground>
    Bitmap over(Ground ground) const
    {
        Bitmap result(PixelFormat::Bgra32, size());
        bool isOpaque = true;
        std::vector<Argb> keep = m_keep.lineBuffer(), flip = m_flip.lineBuffer();
        for (int32_t y = 0; y < result.height(); ++y) {
            m_keep.readLine(y, keep.data());
            m_flip.readLine(y, flip.data());
            for (int32_t x = 0; x < result.width(); ++x) {
                const PixelMixture pixel{ keep[size_t(x)] & kColourBits,
                                          flip[size_t(x)] & kColourBits };
                isOpaque = isOpaque && !pixel.isNothing();
                flip[size_t(x)] =
                        pixel.isNothing() ? kClear : pixel.over(ground(x, y)) | kAlphaBits;
            }
            result.writeLine(y, flip.data());
        }
        if (isOpaque)
            result.dropAlpha();
        return result;
    }
    /// What is multiplied with the picture, and what is then added to it or taken from it.
    const Bitmap &keep() const { return m_keep; }
    const Bitmap &flip() const { return m_flip; }

private:
    void judge();

    Bitmap m_keep, m_flip;
    bool m_isPlain = false, m_isSaturated = false;
    bool m_isUnion = false, m_isDisjoint = false;
};

/// As many pixels of @p bitmap as @p size has, each the one whose place its centre has: what GDI
/// paints when it stretches.
/// @param size  1 by 1 or larger
/// @throws std::bad_alloc
Bitmap resampled(Bitmap bitmap, IntSize size);

/// The colour that all pixels have; nothing when they differ.
std::optional<Argb> onlyColour(const Bitmap &bitmap);

} // namespace svgtool
