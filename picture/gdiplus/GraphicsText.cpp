#include "picture/gdiplus/GraphicsText.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace svgtool::picture {

GraphicsText::Face GraphicsText::faceOf(const plus::Font &font) const
{
    constexpr int32_t kNormal = 400, kBold = 700;
    Face face;
    face.named.weight = font.isBold ? kBold : kNormal;
    face.named.isItalic = font.isItalic;
    face.named.isUnderlined = font.isUnderlined;
    face.named.isStruckOut = font.isStruckOut;
    face.named.face = font.family;
    RealizedFont &realized = face.font;
    realized.request = measuredFace(face.named, realized.shape, realized.substitute);
    realized.style = documentStyle(face.named, realized.substitute);
    realized.symbols = symbolFont(namedFace(face.named).face);
    realized.em = m_graphics.lengthInWorld(std::abs(font.emSize), font.unit);
    const FontTables &tables = realized.shape.tables;
    realized.ascent = realized.em * tables.winAscent / tables.unitsPerEm;
    realized.descent = realized.em * tables.winDescent / tables.unitsPerEm;
    return face;
}

Played GraphicsText::paint(std::span<const PlacedCharacter> characters, const Face &face,
                           const Affine &toWorld, const plus::Brush &brush, Index clip,
                           uint32_t options)
{
    const auto *const solid = std::get_if<plus::SolidBrush>(&brush);
    if (solid == nullptr)
        return fillOutlines(characters, face, toWorld, brush);
    // The font in units of the picture, and axes without its scale.
    Affine axes = toWorld.then(m_graphics.toPicture());
    const double scale = axes.scaleY();
    if (!axes.isFinite() || !std::isfinite(1 / scale) || !std::isfinite(1 / axes.determinant()))
        return kDone;
    RealizedFont font = face.font;
    font.em *= scale;
    font.ascent *= scale;
    font.descent *= scale;
    std::vector<PlacedCharacter> placed(characters.begin(), characters.end());
    for (PlacedCharacter &each : placed) {
        each.x *= scale;
        each.y *= scale;
    }
    axes = { axes.a / scale, axes.b / scale, axes.c / scale, axes.d / scale, axes.e, axes.f };
    const Color color{ uint8_t(solid->color >> 16), uint8_t(solid->color >> 8),
                       uint8_t(solid->color), uint8_t(solid->color >> 24) };
    return m_context.paintLetters(std::move(placed), face.named, font, axes, color, clip, options);
}

// What is no plain colour is filled as figures are.
Played GraphicsText::fillOutlines(std::span<const PlacedCharacter> characters, const Face &face,
                                  const Affine &toWorld, const plus::Brush &brush)
{
    const RealizedFont &font = face.font;
    const double perUnit = font.em / font.shape.tables.unitsPerEm;
    const LetterOutlines outlines(characters, font.request);
    plus::PathObject path;
    path.isWinding = true;
    for (const PlacedCharacter &each : characters) {
        Path outline = outlines.of(each.character);
        outline.transform(
                Affine::scale(perUnit, perUnit).then(Affine::translation(each.x, each.y)));
        path.outline.append(outline);
    }
    const auto line = [&](double top, double thickness) {
        const PlacedCharacter &last = characters.back();
        path.outline.addRect({ characters.front().x, -top * perUnit,
                               last.x + last.shape.advance * perUnit,
                               (thickness - top) * perUnit });
    };
    const FontShape &shape = font.shape;
    if (face.named.isUnderlined && !characters.empty())
        line(shape.underline + shape.underlineThickness / 2.0, shape.underlineThickness);
    if (face.named.isStruckOut && !characters.empty())
        line(shape.strikeOut, shape.strikeOutThickness);
    path.outline.transform(toWorld);
    const Played played = m_graphics.fillPath(brush, path);
    return played.isDone() && !shape.isNamed
            ? approximated("its font is not installed, and the outlines are another one's")
            : played;
}

// The page's way from the units of vertical text, whose lines run down.
static Affine orientation(const plus::StringFormat &format, const RectD &box)
{
    const Affine place = Affine::translation(box.left, box.top);
    if ((format.flags & plus::StringFormat::kVertical) == 0)
        return place;
    return Affine{ 0, 1, -1, 0, std::max(box.width(), 0.0), 0 }.then(place);
}

// Around the letters, before they are placed on the page.
static RectD inkOf(std::span<const StringLine> lines, const RealizedFont &font)
{
    const double reach = font.em / 4; // what letters may stick out of their boxes by
    RectD ink{ 0, 0, 0, 0 };
    for (const StringLine &line : lines) {
        const PointD at = line.baseline;
        const double width = line.characters.empty() ? 0 : line.characters.back().x + font.em;
        ink = { std::min(ink.left, at.x - reach), std::min(ink.top, at.y - font.ascent),
                std::max(ink.right, at.x + width), std::max(ink.bottom, at.y + font.descent) };
    }
    return ink;
}

static bool isEmptyFont(const RealizedFont &font)
{
    return !(font.em > 0) || !std::isfinite(font.em);
}

Played GraphicsText::drawString(std::u16string_view text, const plus::Font &font,
                                const plus::Brush &brush, const plus::StringFormat &format,
                                const RectD &box)
{
    const Face face = faceOf(font);
    if (isEmptyFont(face.font) || m_graphics.isClippedAway())
        return kDone;
    const bool isVertical = (format.flags & plus::StringFormat::kVertical) != 0;
    const PointD size =
            isVertical ? PointD{ box.height(), box.width() } : PointD{ box.width(), box.height() };
    const auto lines = layOutString(text, format, face.font, size);
    const Affine toWorld = orientation(format, box);
    Index clip = m_graphics.clip();
    const bool isCut = (format.flags & plus::StringFormat::kNoClip) == 0 && size.x > 0 && size.y > 0
            && !box.contains(mapBounds(toWorld, inkOf(lines, face.font)));
    if (isCut) {
        Area area;
        area.path.addRect(box);
        area.path.transform(m_graphics.toPicture());
        clip = m_graphics.clipTo(area);
    }
    const uint32_t options =
            (format.flags & plus::StringFormat::kRightToLeft) != 0 ? TextOption::kRightToLeft : 0;
    Played played = kDone;
    for (const StringLine &line : lines) {
        const Affine place = Affine::translation(line.baseline.x, line.baseline.y).then(toWorld);
        const Played painted = paint(line.characters, face, place, brush, clip, options);
        if (!painted.isDone())
            played = painted;
        underline(line, face, place, brush);
    }
    return played;
}

// Keys that are to be pressed.
void GraphicsText::underline(const StringLine &line, const Face &face, const Affine &toWorld,
                             const plus::Brush &brush)
{
    const FontShape &shape = face.font.shape;
    const double perUnit = face.font.em / shape.tables.unitsPerEm;
    for (const size_t at : line.hotkeys) {
        const PlacedCharacter &key = line.characters[at];
        const double top = -(shape.underline + shape.underlineThickness / 2.0) * perUnit;
        plus::PathObject path;
        path.outline.addRect({ key.x, top, key.x + key.shape.advance * perUnit,
                               top + shape.underlineThickness * perUnit });
        path.outline.transform(toWorld);
        m_graphics.fillPath(brush, path);
    }
}

// The characters of a driver string, each where it is told to stand; the first at the origin.
static std::vector<PlacedCharacter> placedCharacters(std::u16string_view text, uint32_t options,
                                                     const RealizedFont &font,
                                                     std::span<const PointD> places)
{
    std::vector<size_t> units;
    std::u32string codes = decode(text, units);
    for (char32_t &code : codes)
        code = meaning(code, font.symbols);
    const auto shapes = characterShapes(codes, font.request);
    const bool hasOwnAdvances = (options & GraphicsText::kHasOwnAdvances) != 0;
    const double perUnit = font.em / font.shape.tables.unitsPerEm;
    std::vector<PlacedCharacter> characters;
    PointD at;
    for (size_t i = 0; i < codes.size(); ++i) {
        if (!hasOwnAdvances && units[i] < places.size())
            at = { places[units[i]].x - places[0].x, places[units[i]].y - places[0].y };
        characters.push_back({ codes[i], at.x, at.y, shapes[i] });
        if ((options & GraphicsText::kIsVertical) != 0)
            at.y += font.em;
        else
            at.x += shapes[i].advance * perUnit;
    }
    return characters;
}

Played GraphicsText::drawDriverString(std::u16string_view codes, const plus::Font &font,
                                      const plus::Brush &brush, uint32_t options,
                                      std::span<const PointD> places, const Affine &matrix)
{
    const Face face = faceOf(font);
    if (isEmptyFont(face.font) || m_graphics.isClippedAway() || codes.empty() || places.empty())
        return kDone;
    Played played = kDone;
    std::u16string text(codes);
    if ((options & kIsCharacters) == 0) {
        if (face.font.shape.isNamed)
            text = charactersOfGlyphs(codes, face.font.request);
        else
            text.assign(codes.size(), u'\0');
        if (text.find(u'\0') != text.npos)
            played = approximated("it names glyphs of a font that is not installed");
    }
    const Affine toWorld = Affine::translation(places[0].x, places[0].y).then(matrix);
    const auto characters = placedCharacters(text, options, face.font, places);
    const Played painted = paint(characters, face, toWorld, brush, m_graphics.clip(),
                                 (options & kIsCharacters) == 0 ? TextOption::kGlyphs : 0);
    return painted.isDone() ? played : painted;
}

} // namespace svgtool::picture
