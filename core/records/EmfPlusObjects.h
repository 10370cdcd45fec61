#pragma once

#include "core/records/EmfPlusBrushes.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace svgtool::plus {

// Objects of EMF+ besides brushes, paths, regions and images; see EmfPlusBrushes.h for what holds
// of all of them.

/// LineCapType, 2.1.1.18.
enum class LineCap : uint8_t {
    Flat = 0,
    Square = 1,
    Round = 2,
    Triangle = 3,
    NoAnchor = 0x10,
    SquareAnchor = 0x11,
    RoundAnchor = 0x12,
    DiamondAnchor = 0x13,
    ArrowAnchor = 0x14,
};

/// LineJoinType, 2.1.1.19.
enum class LineJoin : uint8_t { Miter, Bevel, Round, MiterClipped };

/// LineStyle, 2.1.1.20.
enum class DashStyle : uint8_t { Solid, Dash, Dot, DashDot, DashDotDot, Custom };

/// DashedLineCapType, 2.1.1.10.
enum class DashCap : uint8_t { Flat = 0, Round = 2, Triangle = 3 };

/// PenAlignment, 2.1.1.23.
enum class PenAlignment : uint8_t { Center, Inset, Left, Outset, Right };

/// CustomLineCap of figures, 2.2.2.13. Lengths are widths of the line; y grows out of the line,
/// whose end is the origin.
struct PathCap
{
    LineCap baseCap = LineCap::Flat; ///< of the line, where it ends for the cap
    double baseInset = 0; ///< by which the line is shorter
    LineCap startCap = LineCap::Flat, endCap = LineCap::Flat; ///< of the strokes of `line`
    LineJoin join = LineJoin::Miter;
    double miterLimit = 10;
    double widthScale = 1;
    std::optional<PathObject> fill; ///< is filled
    std::optional<PathObject> line; ///< is stroked with the width of the line
};

/// CustomLineCap of an arrow that can be adjusted, 2.2.2.12. Lengths are widths of the line.
struct ArrowCap
{
    double width = 0, height = 0;
    double middleInset = 0; ///< of the middle of its base towards the tip
    bool isFilled = true; ///< else two strokes that meet at the tip
    LineCap startCap = LineCap::Flat, endCap = LineCap::Flat;
    LineJoin join = LineJoin::Miter;
    double miterLimit = 10;
    double widthScale = 1;
};

using CustomLineCap = std::variant<PathCap, ArrowCap>;

/// Pen, 2.2.1.7.
struct Pen
{
    Unit unit = Unit::World; ///< of the width
    DashStyle dashStyle = DashStyle::Solid;
    DashCap dashCap = DashCap::Flat;
    LineCap startCap = LineCap::Flat, endCap = LineCap::Flat;
    LineJoin join = LineJoin::Miter;
    PenAlignment alignment = PenAlignment::Center;
    double width = 1; ///< 0 or more
    Affine transform; ///< of the tip
    /// Count in the place of the caps above where there are some.
    std::shared_ptr<const CustomLineCap> customStartCap, customEndCap;
    double miterLimit = 10;
    double dashOffset = 0; ///< widths of the pen
    /// Of Custom alone: dash, gap, dash ... in widths of the pen, all 0 or more and not all 0.
    std::vector<double> dashes;
    /// Edges of stripes across the width, from 0 to 1 and ascending, two for each stripe; empty for
    /// a single one.
    std::vector<double> stripes;
    Brush brush;
};

/// Font, 2.2.1.3.
struct Font
{
    double emSize = 0;
    Unit unit = Unit::World; ///< of the size
    bool isBold = false, isItalic = false, isUnderlined = false, isStruckOut = false;
    std::u16string family;
};

/// StringAlignment, 2.1.1.29.
enum class StringAlignment : uint8_t { Near, Center, Far };

/// HotkeyPrefix, 2.1.1.14: what becomes of "&".
enum class HotkeyPrefix : uint8_t { None, Show, Hide };

/// StringTrimming, 2.1.1.30.
enum class StringTrimming : uint8_t {
    None,
    Character,
    Word,
    EllipsisCharacter,
    EllipsisWord,
    EllipsisPath,
};

/// StringFormat, 2.2.1.9, with the values of the generic default.
struct StringFormat
{
    /// Bits of `flags`, 2.1.2.8.
    static constexpr uint32_t kRightToLeft = 1, kVertical = 2, kNoFitBlackBox = 4,
                              kMeasuresTrailingSpaces = 0x800, kNoWrap = 0x1000,
                              kLineLimit = 0x2000, kNoClip = 0x4000;

    uint32_t flags = 0;
    StringAlignment alignment = StringAlignment::Near; ///< along the line
    StringAlignment lineAlignment = StringAlignment::Near; ///< across the lines
    double firstTabOffset = 0; ///< world units
    HotkeyPrefix hotkeys = HotkeyPrefix::None;
    double leadingMargin = 1.0 / 6, trailingMargin = 1.0 / 6; ///< ems
    double tracking = 1.03; ///< factor of advances
    StringTrimming trimming = StringTrimming::Character;
    std::vector<double> tabStops; ///< each from the one before, world units
};

/// ImageAttributes, 2.2.1.5: what there is of an image beyond its edges.
struct ImageAttributes
{
    WrapMode wrapMode = WrapMode::Clamp;
    Argb clampColor = 0; ///< of Clamp
    bool clampsToBitmap = false; ///< else to the rectangle
};

/// A slot of the table of objects. What is large is shared by those who use it.
using Object =
        std::variant<std::monostate, std::shared_ptr<const Brush>, std::shared_ptr<const Pen>,
                     std::shared_ptr<const PathObject>, std::shared_ptr<const Region>,
                     std::shared_ptr<const Image>, std::shared_ptr<const Font>,
                     std::shared_ptr<const StringFormat>, std::shared_ptr<const ImageAttributes>,
                     std::shared_ptr<const CustomLineCap>>;

/// Slots that a file has; each holds an object of any type.
inline constexpr size_t kObjectSlots = 64;
using ObjectTable = std::array<Object, kObjectSlots>;

/// The object in a slot; null where there is none or one of another type.
template<class T>
std::shared_ptr<const T> objectAt(const ObjectTable &table, uint32_t slot)
{
    if (slot >= table.size())
        return nullptr;
    const auto *const held = std::get_if<std::shared_ptr<const T>>(&table[slot]);
    return held != nullptr ? *held : nullptr;
}

} // namespace svgtool::plus
