#include "picture/gdi/TextLayout.h"

#include "core/fonts/KnownFaces.h"
#include "core/text/FaceNames.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool::picture {

// Letters are drawn upright whatever the signs of the mapping are, but in the advanced mode.
static Affine upright(const State &state, const Affine &map)
{
    const Affine &all = state.toDevice, &world = state.world;
    Affine turned = map;
    if (all.a * world.a + all.c * world.c < 0) {
        turned.a = -turned.a;
        turned.b = -turned.b;
    }
    if (all.b * world.b + all.d * world.d < 0) {
        turned.c = -turned.c;
        turned.d = -turned.d;
    }
    if (turned.determinant() < 0) {
        const double sign = turned.a < 0 ? -1 : 1;
        turned = { sign * turned.a, sign * turned.b, -sign * turned.c, -sign * turned.d, 0, 0 };
    }
    return turned;
}

static bool isSheared(const Affine &map)
{
    const double across = map.a * map.c + map.b * map.d;
    return std::abs(across) > 1e-3 * map.scaleX() * map.scaleY();
}

/// How high a font's letters are: in pixels as GDI has them, while those are fine enough for the
/// picture, else as they come out.
static void setSize(RealizedFont &realized, int32_t height, double scale, const Device &device)
{
    constexpr double kLeastWhole = 4, kMostWhole = 1e6;
    constexpr double kCoarse = 0.5; // units of a CSS pixel
    const FontTables &tables = realized.shape.tables;
    const double unitsPerEm = tables.unitsPerEm;
    const double asked = height != 0 ? std::abs(double(height)) * scale : 16 * device.unitsPerPixel;
    realized.isWhole =
            asked >= kLeastWhole && asked <= kMostWhole && device.unitsPerPixel >= kCoarse;
    if (realized.isWhole) {
        const auto whole = int32_t(std::floor(asked + 0.5));
        const int32_t pixels = pixelsPerEm(tables, height < 0 ? -whole : whole);
        const FontMetrics metrics = scaledMetrics(tables, pixels);
        realized.em = pixels;
        realized.ascent = metrics.ascent;
        realized.descent = metrics.descent;
    } else {
        const double cell = tables.winAscent + tables.winDescent;
        realized.em = height < 0 ? asked : asked * unitsPerEm / cell;
        realized.ascent = realized.em * tables.winAscent / unitsPerEm;
        realized.descent = realized.em * tables.winDescent / unitsPerEm;
    }
}

FontRequest namedFace(const Font &font)
{
    std::u16string_view face = font.face;
    if (face.starts_with(u'@')) // letters for vertical lines
        face.remove_prefix(1);
    return { std::u16string(readFaceName(face).family), font.weight, font.isItalic };
}

// What GDI takes for a face that it does not know goes by the family.
static const char16_t *substituteOf(FontStyle::Generic generic)
{
    switch (generic) {
    case FontStyle::Generic::Serif:
        return u"Times New Roman";
    case FontStyle::Generic::Monospace:
        return u"Courier New";
    default:
        return u"Arial";
    }
}

FontRequest measuredFace(const Font &font, FontShape &shape, std::u16string &substitute)
{
    const FontStyle style = fontStyleOf(font);
    FontRequest request = namedFace(font);
    if (symbolFont(request.face) != SymbolFont::None)
        request.face = style.families.front(); // its symbols are drawn as characters of another
    shape = fontShape(request);
    if (shape.isNamed)
        return request;
    // Others of its kind stand in for a face that is not there.
    const auto found = std::ranges::find_if(style.families, [&](const std::u16string &family) {
        return fontShape({ family, font.weight, font.isItalic }).isNamed;
    });
    if (found != style.families.end())
        request.face = *found;
    else
        request.face = substitute = substituteOf(style.generic);
    shape = fontShape(request);
    shape.isNamed = false;
    return request;
}

FontStyle documentStyle(const Font &font, const std::u16string &substitute)
{
    FontStyle style = fontStyleOf(font);
    if (!substitute.empty()) {
        // The letters stand where those of the face stand that is taken for the one named.
        Font other;
        other.face = substitute;
        const FontStyle more = fontStyleOf(other);
        style.families.insert(style.families.end(), more.families.begin(), more.families.end());
    }
    return style;
}

std::optional<RealizedFont> realizeFont(const State &state, const Device &device, bool isAdvanced)
{
    const Font &font = *state.font;
    RealizedFont realized;
    realized.request = measuredFace(font, realized.shape, realized.substitute);
    realized.style = documentStyle(font, realized.substitute);
    realized.symbols = symbolFont(namedFace(font).face);
    realized.isVertical = font.face.starts_with(u'@');

    Affine map = state.toDevice.then(device.toPicture);
    map.e = map.f = 0;
    double tenth = std::numbers::pi / 1800; // of a degree
    if (!isAdvanced) {
        // Where the mapping is mirrored, lines turn the other way, but the letters stay as they
        // are.
        const bool wasMirrored = map.determinant() < 0;
        map = upright(state, map);
        if (wasMirrored != (map.determinant() < 0))
            tenth = -tenth;
    }
    const double turn = font.escapement * tenth;
    if (isAdvanced)
        realized.lean = (double(font.orientation) - font.escapement) * tenth;
    const PointD along = map.mapVector({ std::cos(turn), -std::sin(turn) });
    const double perLogical = std::hypot(along.x, along.y);
    double scale = map.scaleY();
    if (isAdvanced || isSheared(map)) {
        const PointD down = map.mapVector({ std::sin(turn), std::cos(turn) });
        scale = std::hypot(down.x, down.y);
        realized.axes = { along.x / scale, along.y / scale, down.x / scale, down.y / scale, 0, 0 };
    } else {
        // Only the height is scaled, and the escapement is that of the device.
        const PointD e{ map.a / map.scaleX(), map.b / map.scaleX() };
        const double c = std::cos(turn), s = std::sin(turn);
        realized.axes = {
            c * e.x + s * e.y, c * e.y - s * e.x, s * e.x - c * e.y, s * e.y + c * e.x, 0, 0
        };
    }
    setSize(realized, font.height, scale, device);
    const FontTables &tables = realized.shape.tables;
    if (font.width != 0 && tables.averageWidth > 0) {
        // What stands in for a face that is not there may be of quite another width, and the
        // average of a font without small letters says nothing.
        constexpr double kUsual = 0.44, kLeast = 0.3; // of an em, the one as in Arial
        const double known = double(tables.averageWidth) / tables.unitsPerEm;
        const bool counts = realized.shape.isNamed && known >= kLeast;
        const double average = realized.em * (counts ? known : kUsual);
        // Beyond that no letter can be told, and librsvg gives up on the whole document.
        constexpr double kWidest = 1000;
        const double wanted =
                std::abs(double(font.width)) * perLogical / (average * realized.axes.scaleX());
        const double stretch = std::fmin(wanted, kWidest);
        realized.axes.a *= stretch;
        realized.axes.b *= stretch;
    }
    realized.perLogical = perLogical / realized.axes.scaleX();
    const bool isSound = realized.axes.isFinite() && std::isfinite(1 / realized.axes.determinant())
            && realized.em > 0 && std::isfinite(realized.em) && std::isfinite(realized.perLogical);
    return isSound ? std::optional(realized) : std::nullopt;
}

std::u32string decode(std::u16string_view text, std::vector<size_t> &units)
{
    std::u32string characters;
    characters.reserve(text.size());
    units.reserve(text.size() + 1);
    for (size_t i = 0; i < text.size(); ++i) {
        units.push_back(i);
        const char32_t unit = text[i];
        if ((unit & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00)
            characters += char32_t(0x10000 + ((unit & 0x3FF) << 10 | (text[++i] & 0x3FF)));
        else
            characters += (unit & 0xF800) == 0xD800 ? U'\uFFFD' : unit;
    }
    units.push_back(text.size());
    return characters;
}

char32_t meaning(char32_t code, SymbolFont symbols)
{
    constexpr char32_t kBlank = 0xF020; // of any symbol font
    if (code == kBlank)
        return U' ';
    return symbols == SymbolFont::None ? code : symbolCharacter(symbols, code);
}

// As wide as they are high, in fonts that have them.
static bool isWide(char32_t character)
{
    return (character >= 0x1100 && character < 0x1160)
            || (character >= 0x2E80 && character < 0xA4D0)
            || (character >= 0xAC00 && character < 0xD7A4)
            || (character >= 0xF900 && character < 0xFB00)
            || (character >= 0xFE30 && character < 0xFE50)
            || (character >= 0xFF00 && character < 0xFF61) || character >= 0x1F000;
}

// As wide as GDI makes a character whose advance is not recorded: as in the font of symbols that
// it is a code of, not as in what stands in for that, and never as a mark for a missing glyph,
// since GDI takes such characters from other fonts.
static double ownAdvance(char32_t code, const PlacedCharacter &placed, const RealizedFont &font,
                         int64_t scale)
{
    const int32_t em = font.shape.tables.unitsPerEm;
    int32_t advance = placed.shape.advance;
    const bool isSymbol = font.symbols != SymbolFont::None;
    if (const int32_t known = isSymbol ? symbolAdvance(font.symbols, code) : 0; known != 0)
        advance = known * em / 1000;
    else if (!placed.shape.hasGlyph && isWide(placed.character))
        advance = em;
    else if (!placed.shape.hasGlyph && advance == 0)
        advance = em / 2;
    return font.isWhole ? scaledAdvance(advance, scale) : font.em * advance / em;
}

// GDI hints letters where they are neither turned nor stretched; but what it takes for the width
// of a whole text, by which it is aligned, has no hints.
static std::vector<int32_t> hintedAdvances(std::u32string_view text, const RealizedFont &font)
{
    constexpr double kClose = 1e-6;
    const Affine &axes = font.axes;
    const bool isPlain = std::abs(axes.a - 1) < kClose && std::abs(axes.d - 1) < kClose
            && std::abs(axes.b) < kClose && std::abs(axes.c) < kClose;
    return isPlain && font.isWhole ? hintedAdvances(text, font.request, int32_t(font.em))
                                   : std::vector<int32_t>();
}

TextLayout layOut(const TextCall &call, const State &state, const RealizedFont &font)
{
    TextLayout layout;
    std::vector<size_t> units;
    const std::u32string codes = decode(call.text, units);
    std::u32string text = codes;
    for (char32_t &character : text)
        character = meaning(character, font.symbols);
    auto shapes = characterShapes(text, font.request);
    const bool hasGlyphs = (call.options & TextOption::kGlyphs) != 0;
    for (size_t i = 0; hasGlyphs && i < text.size(); ++i) {
        if (text[i] == 0) // it is not known what the glyph shows
            shapes[i] = { font.shape.tables.averageWidth, 0, false };
    }
    const int64_t scale = fixedScale(font.shape.tables, font.isWhole ? int32_t(font.em) : 1);
    const bool isOwn = call.advances.empty() && font.symbols == SymbolFont::None;
    const auto hinted = isOwn ? hintedAdvances(text, font) : std::vector<int32_t>();
    double x = 0, y = 0;
    layout.characters.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        layout.characters.push_back({ text[i], x, -y * font.perLogical, shapes[i] });
        double extra = 0;
        if (call.advances.empty()) {
            extra = state.characterExtra;
            if (text[i] == U' ' && state.breakCount > 0)
                extra += double(state.breakExtra) / state.breakCount;
        }
        for (size_t unit = units[i]; unit < units[i + 1]; ++unit) {
            if (unit < call.advances.size())
                extra += call.advances[unit];
            if (unit < call.rises.size())
                y += call.rises[unit];
        }
        const double own = call.advances.empty()
                ? ownAdvance(codes[i], layout.characters.back(), font, scale)
                : 0;
        const bool isHinted = !hinted.empty() && shapes[i].hasGlyph;
        x += extra * font.perLogical + (isHinted ? hinted[i] : own);
        layout.width += extra * font.perLogical + own;
    }
    return layout;
}

std::vector<TextRun> divided(std::span<const PlacedCharacter> characters, const RealizedFont &font,
                             double tolerance)
{
    // A run goes on as long as what its characters are off by, seen from where a viewer puts them
    // behind its first one, lies in a band; it is moved so that the band's middle is right.
    const double perUnit = font.em / font.shape.tables.unitsPerEm;
    std::vector<TextRun> runs;
    double natural = 0, least = 0, most = 0;
    for (size_t i = 0; i < characters.size(); ++i) {
        const PlacedCharacter &each = characters[i];
        const PlacedCharacter *const before = i > 0 ? &characters[i - 1] : nullptr;
        if (before != nullptr)
            natural += (before->shape.advance + each.shape.kerning) * perUnit;
        const double off = each.x - natural;
        if (before != nullptr && each.character == U' ')
            continue; // it is not seen wherever it stands
        const bool goesOn = before != nullptr && before->shape.hasGlyph && before->y == each.y
                && std::max(most, off) - std::min(least, off) <= 2 * tolerance;
        if (goesOn) {
            least = std::min(least, off);
            most = std::max(most, off);
        } else {
            natural = each.x;
            least = most = 0;
            runs.push_back({ i, each.x, each.y });
        }
        // The first character stays where the others are so near that nobody sees it.
        const double shift = (least + most) / 2;
        runs.back().x =
                characters[runs.back().first].x + (std::max(-least, most) > tolerance ? shift : 0);
    }
    return runs;
}

bool liesOnSide(char32_t character)
{
    // Brackets and dashes go with the line, and so stand as they should on one that runs down.
    const bool goesWithLine = (character >= 0x3008 && character <= 0x3011)
            || (character >= 0x3014 && character <= 0x301C) || character == 0x30FC
            || character == 0xFF08 || character == 0xFF09 || character == 0xFF0D
            || character == 0xFF3B || character == 0xFF3D
            || (character >= 0xFF5B && character <= 0xFF60);
    return isWide(character) && !goesWithLine;
}

bool isRightToLeftBeyondLatin(char32_t character)
{
    return (character >= 0x590 && character < 0x900) || (character >= 0xFB1D && character < 0xFE00)
            || (character >= 0xFE70 && character < 0xFEFF)
            || (character >= 0x10800 && character < 0x11000)
            || (character >= 0x1E800 && character < 0x1F000);
}

bool needsShapingBeyondLatin(char32_t character)
{
    return isRightToLeftBeyondLatin(character) || (character >= 0x300 && character < 0x370)
            || (character >= 0x900 && character < 0x10A0)
            || (character >= 0x1780 && character < 0x1800);
}

} // namespace svgtool::picture
