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

/// One transfer that is mixed with what lies beneath.
struct MixedTransfer
{
    Bitmap source; ///< not null
    RasterOperation operation;
    Argb colour = 0; ///< of the brush
    /// Of the size of the source, or null to take the colour for all pixels. Nothing changes where
    /// it is transparent.
    Bitmap pattern = {};
    /// Indexed1 and of the size of the source: where it has a 0 the other operation holds; or null.
    Bitmap mask = {};
    RasterOperation outside = kNoOperation;
};

/// A mixture for each pixel: what one or several transfers do to their part of the picture.
///
/// It takes no more memory than their bitmaps do: its lines are computed when they are asked for.
class Mixture
{
public:
    /// @throws std::bad_alloc
    explicit Mixture(MixedTransfer transfer);

    IntSize size() const { return m_size; }
    int64_t pixelCount() const { return int64_t(m_size.width) * m_size.height; }
    /// Gives it so many pixels, as resampled() does.
    void resample(IntSize size) { m_size = size; }
    /// Puts @p next after it, with as many pixels as the finer one of the two has.
    void then(Mixture next);
    /// How many transfers it is made of. Each pixel takes the time of all of them.
    size_t depth() const { return m_transfers.size(); }

    /// What holds for all pixels.
    struct Kind
    {
        /// None depends on what lies beneath, but for those that leave it alone.
        bool isPlain = true;
        /// All bits of each channel that depends on what lies beneath depend alike, so that
        /// multiplying, adding and taking differences do the same as the bits.
        bool isSaturated = true;
        /// It is OR with the colours of flip().
        bool isUnion = true;
        /// What is flipped is not kept: it is added.
        bool isDisjoint = true;
    };
    /// Looks at each pixel, of which it computes them all.
    Kind kind() const;

    /// Computes the pixels of one line after the other.
    class Lines
    {
    public:
        explicit Lines(const Mixture &mixture);
        const std::vector<PixelMixture> &at(int32_t y);

    private:
        struct Transfer
        {
            const MixedTransfer *from;
            std::vector<int32_t> columns; ///< of its pixels, for each of the mixture
            std::vector<PixelMixture> pixels; ///< of its line, and of which one that is
            int32_t line = -1;
        };

        void read(Transfer &transfer, int32_t line);

        std::vector<Transfer> m_transfers;
        int32_t m_height;
        std::vector<Argb> m_source, m_pattern;
        std::vector<PixelMixture> m_pixels;
    };

    /// The pixels on a ground of these colours: Bgra32, transparent where it stays as it is, or
    /// Bgr32 where it does nowhere.
    /// @param ground  of each pixel; called line by line
    template<class Ground>
    Bitmap over(Ground ground) const
    {
        Bitmap result(PixelFormat::Bgra32, m_size);
        bool isOpaque = true;
        std::vector<Argb> colours = result.lineBuffer();
        Lines lines(*this);
        for (int32_t y = 0; y < m_size.height; ++y) {
            const std::vector<PixelMixture> &pixels = lines.at(y);
            for (int32_t x = 0; x < m_size.width; ++x) {
                const PixelMixture pixel = pixels[size_t(x)];
                isOpaque = isOpaque && !pixel.isNothing();
                colours[size_t(x)] =
                        pixel.isNothing() ? kClear : pixel.over(ground(x, y)) | kAlphaBits;
            }
            result.writeLine(y, colours.data());
        }
        if (isOpaque)
            result.dropAlpha();
        return result;
    }
    /// What is multiplied with the picture, and what is then added to it or taken from it: Bgr32.
    Bitmap keep() const { return bitmapOf(&PixelMixture::keep); }
    Bitmap flip() const { return bitmapOf(&PixelMixture::flip); }

private:
    Bitmap bitmapOf(Argb PixelMixture::*colour) const;

    std::vector<MixedTransfer> m_transfers;
    IntSize m_size;
};

/// As many pixels of @p bitmap as @p size has, each the one whose place its centre has: what GDI
/// paints when it stretches.
/// @param size  1 by 1 or larger
/// @throws std::bad_alloc
Bitmap resampled(Bitmap bitmap, IntSize size);

/// The colour that all pixels have; nothing when they differ.
std::optional<Argb> onlyColour(const Bitmap &bitmap);

} // namespace svgtool
