#pragma once

#include "core/geometry/Path.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace svgtool::plus {

// Objects that the Object records of EMF+ make ([MS-EMFPLUS] 2.2), as values that own all they
// hold. Section numbers are those of [MS-EMFPLUS].
//
// Who reads them sees to it that all numbers are finite and all enumerations have one of their
// values. Coordinates are world units as they were recorded.

/// A colour as 0xAARRGGBB, not premultiplied.
using Argb = uint32_t;

/// UnitType, 2.1.1.33.
enum class Unit : uint8_t { World, Display, Pixel, Point, Inch, Document, Millimeter };

/// WrapMode, 2.1.1.34: what lies behind the edges of a tile.
enum class WrapMode : uint8_t { Tile, FlipX, FlipY, FlipXY, Clamp };

/// CombineMode, 2.1.1.4: New is what comes, old what there is.
enum class CombineMode : uint8_t { Replace, Intersect, Union, Xor, Exclude, Complement };

/// Path, 2.2.1.6. Markers and dash marks are not kept.
struct PathObject
{
    Path outline;
    bool isWinding = false; ///< else even-odd
};

/// A node of a Region, 2.2.2.40.
struct RegionNode
{
    enum class Kind : uint8_t {
        Intersect, ///< of two regions, as those down to Complement
        Union,
        Xor,
        Exclude, ///< left without right
        Complement, ///< right without left
        Rectangle,
        Path,
        Empty,
        Infinite,
    };
    bool isCombination() const { return kind <= Kind::Complement; }

    Kind kind = Kind::Empty;
    RectD box; ///< of Rectangle, ascending
    std::shared_ptr<const PathObject> path; ///< of Path
};

/// Region, 2.2.1.8: a tree in prefix order, a combination before its left and its right region. It
/// is whole: exactly one region comes of it.
///
/// Going through the nodes from the last to the first, with a stack, no recursion is needed: what
/// is no combination is put onto it, and a combination takes left and right, in this order, off.
struct Region
{
    std::vector<RegionNode> nodes;
};

/// PixelFormat, 2.1.1.25, by its bits.
namespace PixelFormatBit {
    inline constexpr uint32_t kIndexed = 0x10000, kAlpha = 0x40000, kPremultiplied = 0x80000;
}

/// Bitmap of pixels, 2.2.2.2: EmfPlusBitmap.h makes a Bitmap of them.
struct PixelBitmap
{
    int32_t width = 0, height = 0; ///< 1 or more
    /// Bytes from one line to the next, as many as a line has or more; negative: the bottom line
    /// is the first.
    int32_t stride = 0;
    uint32_t format = 0;
    std::vector<Argb> palette;
    /// |stride| bytes for each line; those behind the last pixel may be missing.
    std::string pixels;
};

inline int bitsPerPixel(const PixelBitmap &bitmap)
{
    return int(bitmap.format >> 8 & 0xFF);
}

/// Bitmap as a whole file of PNG, JPEG, GIF, TIFF or BMP, and up to 3 bytes of padding.
struct CompressedBitmap
{
    std::string file;
};

/// Metafile, 2.2.2.27. What it is, its own bytes tell.
struct NestedMetafile
{
    std::string file;
};

/// Image, 2.2.1.4; nothing in it where the type is not known.
using Image = std::variant<std::monostate, PixelBitmap, CompressedBitmap, NestedMetafile>;

/// A stop of a blend. Positions rise from 0 to 1.
struct BlendFactor
{
    double position = 0;
    double factor = 0; ///< of the end colour
};

struct BlendColor
{
    double position = 0;
    Argb color = 0;
};

struct SolidBrush
{
    Argb color = 0xFF000000;
};

struct HatchBrush
{
    uint8_t style = 0; ///< HatchStyle, 2.1.1.13: up to 52
    Argb foreColor = 0xFF000000, backColor = 0; ///< of lines, and between them
};

struct TextureBrush
{
    WrapMode wrapMode = WrapMode::Tile;
    Affine transform; ///< of the image, a pixel of which is a unit, to world units
    std::shared_ptr<const Image> image; ///< null without one
};

struct LinearGradientBrush
{
    WrapMode wrapMode = WrapMode::Tile;
    RectD box; ///< the colour runs from its left to its right edge; ascending
    Argb startColor = 0, endColor = 0;
    Affine transform; ///< of the box to world units
    std::vector<BlendColor> colors; ///< in the place of both colours, where there are some
    std::vector<BlendFactor> factors; ///< else these, where there are some
    std::vector<BlendFactor> verticalFactors; ///< across
    bool isGammaCorrected = false;
};

struct PathGradientBrush
{
    WrapMode wrapMode = WrapMode::Tile;
    Argb centerColor = 0;
    PointD center;
    /// Of the points of the boundary, one after the other; the last goes for those behind.
    std::vector<Argb> surroundColors;
    PathObject boundary; ///< in the units of the brush
    Affine transform; ///< of the boundary and the centre to world units
    std::vector<BlendColor> colors; ///< from the boundary to the centre, in the place of both
    std::vector<BlendFactor> factors; ///< else these: 1 is the centre's colour
    PointD focusScales; ///< of the part of the boundary that has the centre's colour
    bool isGammaCorrected = false;
};

/// Brush, 2.2.1.1.
using Brush =
        std::variant<SolidBrush, HatchBrush, TextureBrush, LinearGradientBrush, PathGradientBrush>;

} // namespace svgtool::plus
