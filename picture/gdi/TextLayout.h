#pragma once

#include "core/fonts/FontShapes.h"
#include "core/text/SymbolFonts.h"
#include "picture/gdi/Device.h"
#include "picture/gdi/State.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace svgtool::picture {

/// Options of a text, [MS-EMF] 2.1.11.
namespace TextOption {
    inline constexpr uint32_t kOpaque = 2, kClipped = 4, kGlyphs = 0x10, kRightToLeft = 0x80;
}

/// The arguments of ExtTextOut.
struct TextCall
{
    std::u16string_view text;
    PointD reference; ///< logical
    uint32_t options = 0;
    RectD box; ///< logical; of what is opaque or clipped
    std::span<const int32_t> advances; ///< logical, one a unit; empty where the font's own count
    std::span<const int32_t> rises; ///< upwards, likewise; empty for none
    bool isAdvanced = false; ///< recorded in the graphics mode in which letters turn with the world
};

/// A font as a device context has it: the face that is measured, and how its letters lie.
struct RealizedFont
{
    FontRequest request;
    FontShape shape;
    FontStyle style; ///< in a document, but for its size
    /// Is measured in the place of the face that is asked for; empty where that one is there, or
    /// another of its kind.
    std::u16string substitute;
    SymbolFont symbols = SymbolFont::None; ///< what its codes are, if they are not letters
    double em = 0; ///< units of the picture, as all lengths below; above 0
    bool isWhole = false; ///< the em, ascent, descent and advances are whole device units
    double ascent = 0, descent = 0;
    /// Unit vectors along the baseline and down from it, where letters are not stretched; the
    /// translation is none.
    Affine axes;
    double lean = 0; ///< radians by which each letter is turned on the line, against the clock
    bool isVertical =
            false; ///< letters as wide as high lie on their sides, for lines that run down
    double perLogical = 1; ///< units along the baseline of a logical unit of it
};

/// A character and where it stands: along the baseline and down from it, before the axes apply.
struct PlacedCharacter
{
    char32_t character = 0;
    double x = 0, y = 0;
    CharacterShape shape;
};

struct TextLayout
{
    std::vector<PlacedCharacter> characters;
    double width = 0; ///< of the whole line, which need not be where the characters end
};

/// How names of faces are tried in a document, and the family to end with.
FontStyle fontStyleOf(const Font &font);

/// The face that a font names.
FontRequest namedFace(const Font &font);

/// How a document names the letters of a font.
/// @param substitute  as in RealizedFont
FontStyle documentStyle(const Font &font, const std::u16string &substitute);

/// The face whose widths stand for those of a font: the named one, or another of its kind.
/// @param[out] shape  of that face
/// @param[out] substitute  as in RealizedFont
FontRequest measuredFace(const Font &font, FontShape &shape, std::u16string &substitute);

/// The characters of UTF-16; a surrogate alone is none.
/// @param[out] units  the number of the first unit of each, and of all units at the end
std::u32string decode(std::u16string_view text, std::vector<size_t> &units);

/// The character that a code of a font shows.
char32_t meaning(char32_t code, SymbolFont symbols);

/// @return nothing for letters without size
std::optional<RealizedFont> realizeFont(const State &state, const Device &device, bool isAdvanced);

/// Places characters along a baseline that begins at 0.
TextLayout layOut(const TextCall &call, const State &state, const RealizedFont &font);

/// Characters up to the next run, and where to tell a viewer that the first one stands.
struct TextRun
{
    size_t first = 0;
    double x = 0, y = 0;
};

/// Divides characters into runs that a viewer has to be told the places of, so that by
/// itself it puts no character more than @p tolerance away from its own.
std::vector<TextRun> divided(std::span<const PlacedCharacter> characters, const RealizedFont &font,
                             double tolerance);

/// What lies on its side in a face for vertical lines.
bool liesOnSide(char32_t character);

inline constexpr char32_t kFirstBeyondLatin = 0x300;
bool isRightToLeftBeyondLatin(char32_t character);
bool needsShapingBeyondLatin(char32_t character);

/// What is written from right to left by its nature.
inline bool isRightToLeft(char32_t character)
{
    return character >= kFirstBeyondLatin && isRightToLeftBeyondLatin(character);
}
/// Letters that join, stack or change places, which only a viewer's own layout gets right.
inline bool needsShaping(char32_t character)
{
    return character >= kFirstBeyondLatin && needsShapingBeyondLatin(character);
}

} // namespace svgtool::picture
