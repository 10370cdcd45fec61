#pragma once

#include "core/geometry/Affine.h"
#include "core/geometry/Region.h"
#include "core/raster/DibDecoder.h"
#include "picture/scene/Scene.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace svgtool::picture {

// What a device context holds. Names and numbers are those of [MS-EMF] 2.1 and the calls of GDI.

struct PointL
{
    int32_t x = 0, y = 0;
};

enum class MapMode : uint32_t {
    Text = 1,
    LowMetric,
    HighMetric,
    LowEnglish,
    HighEnglish,
    Twips,
    Isotropic,
    Anisotropic,
};

struct Brush
{
    enum class Kind : uint8_t { Solid, Null, Hatched, Pattern };

    Kind kind = Kind::Solid;
    uint8_t hatch = 0; ///< HatchStyle, [MS-EMF] 2.1.17
    Color color{ 255, 255, 255, 255 };
    std::shared_ptr<const DecodedBitmap> pattern = {}; ///< of Pattern
    bool isMono = false; ///< the pattern has the colours of text and background
};

/// A pen as it was made: widths and dashes in logical units, cosmetic ones in pixels.
struct Pen
{
    enum class Line : uint8_t {
        Solid,
        Dash,
        Dot,
        DashDot,
        DashDotDot,
        Null,
        InsideFrame,
        User,
        Alternate
    };

    Line line = Line::Solid;
    bool isGeometric = false;
    bool isExtended = false; ///< made by ExtCreatePen, which alone has caps, joins and user dashes
    Cap cap = Cap::Round;
    Join join = Join::Round;
    double width = 0;
    Brush brush{ Brush::Kind::Solid, 0, {} }; ///< of another kind for geometric pens only
    std::vector<uint32_t> dashes;
};

struct Font
{
    int32_t height = 0; ///< negative: of the characters, positive: of the cell
    int32_t width = 0;
    int32_t escapement = 0; ///< of the line, in tenths of a degree against the clock
    int32_t orientation = 0; ///< of each letter, likewise; counts in the advanced mode only
    int32_t weight = 400;
    bool isItalic = false, isUnderlined = false, isStruckOut = false;
    uint8_t charSet = 1;
    uint8_t pitchAndFamily = 0;
    std::u16string face;

    bool operator==(const Font &) const = default;
};

/// Shared by its slot and the states in which it is selected, so that all see its entries change.
using Palette = std::vector<Argb>;

/// An object that does nothing here, as a colour space, but takes its slot.
struct Other
{
};

/// The figures of a path bracket that has ended.
struct GdiPath
{
    Path path; ///< in device units
    bool isWidened = false; ///< filled by the winding rule, whatever the fill mode
    bool wasUsed = false; ///< by one of the states that share it
};

using GdiObject = std::variant<std::monostate, Pen, Brush, Font, std::shared_ptr<Palette>,
                               std::shared_ptr<const Region>, Other>;

/// What drawing is cut to: a region, and paths that began as such and stay smooth.
///
/// Copying it costs little: many states are saved with a large one.
struct ClipState
{
    Index paths = kNone; ///< the last of a chain in the context; all of them count
    std::shared_ptr<const Region> region; ///< of device units; null is everything
};

/// What can be seen of the picture: what both clips leave.
struct Visible
{
    std::shared_ptr<const Region> region; ///< null is the whole picture
    bool isEmpty = false;
    std::optional<Index> clip; ///< in the scene, where it has been asked for
    RectD box = {}; ///< around the region, in units of the picture
};

/// A bit of State::layout.
inline constexpr uint32_t kRightToLeft = 1;

/// All of a device context that SaveDC keeps. Copying it is saving it.
struct State
{
    MapMode mapMode = MapMode::Text;
    PointL windowOrigin, viewportOrigin;
    PointL windowExtent{ 1, 1 }, viewportExtent{ 1, 1 };
    Affine world;
    uint32_t layout = 0; ///< LAYOUT_ bits
    Affine toDevice; ///< logical to device units, made of the above
    Pen pen;
    uint64_t penLook = 0; ///< another number whenever the same pen may look different
    Brush brush;
    std::shared_ptr<const Font> font;
    Color textColor;
    Color backgroundColor{ 255, 255, 255, 255 };
    bool isOpaque = true;
    bool isWinding = false;
    uint32_t rop2 = 13;
    uint32_t textAlign = 0;
    int32_t characterExtra = 0; ///< logical, behind each character
    int32_t breakExtra = 0, breakCount = 0; ///< logical units to share among so many blanks
    uint32_t stretchMode = 1; ///< StretchMode, [MS-EMF] 2.1.32
    std::shared_ptr<Palette> palette; ///< null for that of the device
    double miterLimit = 10;
    bool isClockwise = false;
    PointL brushOrigin;
    PointD current; ///< logical
    ClipState clip; ///< its paths go on from those of the meta one
    ClipState meta; ///< what SetMetaRgn has put aside
    std::shared_ptr<Visible> visible = std::make_shared<Visible>(); ///< made of these
    std::shared_ptr<GdiPath> path; ///< null without one, or while its bracket is open
};

} // namespace svgtool::picture
