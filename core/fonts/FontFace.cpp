#include "core/fonts/FontFace.h"

#include FT_ADVANCES_H
#include FT_GASP_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <utility>

namespace svgtool {

// The numbers of a face without an OS/2 table. FreeType has taken the ascender and the descender
// from the hhea table where there is one.
static FontTables generalNumbers(FT_Face face)
{
    FontTables tables;
    if (FT_IS_SCALABLE(face)) {
        tables.unitsPerEm = face->units_per_EM;
        tables.ascender = face->ascender;
        tables.descender = face->descender;
        tables.lineGap = face->height - (face->ascender - face->descender);
    } else if (FT_HAS_FIXED_SIZES(face) && FT_Select_Size(face, 0) == 0) {
        // A pixel of the first bitmap strike counts as a unit.
        const FT_Size_Metrics &strike = face->size->metrics;
        tables.unitsPerEm = strike.y_ppem;
        tables.ascender = static_cast<int16_t>(strike.ascender >> 6);
        tables.descender = static_cast<int16_t>(strike.descender >> 6);
    }
    tables.unitsPerEm = std::max(1, tables.unitsPerEm);
    return tables;
}

static FontTables readTables(FT_Face face)
{
    FontTables tables = generalNumbers(face);
    if (const auto *hhea =
                static_cast<const TT_HoriHeader *>(FT_Get_Sfnt_Table(face, FT_SFNT_HHEA))) {
        tables.ascender = hhea->Ascender;
        tables.descender = hhea->Descender;
        tables.lineGap = hhea->Line_Gap;
    }
    tables.winAscent = std::max(0, tables.ascender);
    tables.winDescent = std::max(0, -tables.descender);
    constexpr FT_UShort kAbsent = 0xFFFF;
    const auto *os2 = static_cast<const TT_OS2 *>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (os2 != nullptr && os2->version != kAbsent) {
        tables.averageWidth = os2->xAvgCharWidth;
        if (os2->usWinAscent != 0 || os2->usWinDescent != 0) {
            tables.winAscent = os2->usWinAscent;
            tables.winDescent = os2->usWinDescent;
        }
    }
    if (tables.winAscent + tables.winDescent == 0)
        tables.winAscent = tables.unitsPerEm;
    return tables;
}

FontFace::FontFace(FontFile file, OpenFace face)
    : m_file(std::move(file)), m_face(std::move(face)), m_tables(readTables(m_face.get()))
{
    // FreeType selects the Unicode map by itself, but none where a font has only others.
    if (m_face->charmap == nullptr && m_face->num_charmaps > 0)
        FT_Set_Charmap(m_face.get(), m_face->charmaps[0]);
    if (m_tables.averageWidth == 0)
        m_tables.averageWidth = advance(u'x');
}

FT_UInt FontFace::glyphIndex(char32_t character) const
{
    const FT_UInt glyph = FT_Get_Char_Index(m_face.get(), character);
    const bool isSymbol =
            m_face->charmap != nullptr && m_face->charmap->encoding == FT_ENCODING_MS_SYMBOL;
    // Symbol fonts hold their characters in the private area, and texts name the low byte.
    if (glyph == 0 && isSymbol && character < 0x100)
        return FT_Get_Char_Index(m_face.get(), 0xF000u + character);
    return glyph;
}

uint16_t FontFace::readAdvance(FT_UInt glyph) const
{
    const bool isScalable = FT_IS_SCALABLE(m_face.get());
    const FT_Int32 flags = isScalable ? FT_LOAD_NO_SCALE : FT_LOAD_DEFAULT;
    FT_Fixed advance = 0;
    if (FT_Get_Advance(m_face.get(), glyph, flags, &advance) != 0)
        return 0;
    const FT_Fixed units = isScalable ? advance : advance >> 16;
    return static_cast<uint16_t>(std::clamp<FT_Fixed>(units, 0, 0xFFFF));
}

// Without what is kept here, measuring a text takes more than ten times as long.
const FontFace::KnownCharacter &FontFace::known(char32_t character)
{
    KnownCharacter &place = m_known[character % m_known.size()];
    if (!place.isKnown || place.character != character) {
        const FT_UInt glyph = glyphIndex(character);
        place = { true, character, glyph, readAdvance(glyph) };
    }
    return place;
}

int32_t FontFace::advance(char32_t character)
{
    return known(character).advance;
}

bool FontFace::isHintedAt(int32_t pixels) const
{
    constexpr int32_t kLargest = 100; // larger letters are as wide hinted as not
    if (pixels < 1 || pixels > kLargest || !FT_IS_SCALABLE(m_face.get()))
        return false;
    const FT_Int flags = FT_Get_Gasp(m_face.get(), FT_UInt(pixels));
    return flags != FT_GASP_NO_TABLE && (flags & FT_GASP_DO_GRIDFIT) != 0
            && (flags & FT_GASP_DO_GRAY) == 0;
}

uint16_t FontFace::readHintedAdvance(char32_t character) const
{
    if (FT_Load_Glyph(m_face.get(), glyphIndex(character), FT_LOAD_TARGET_MONO) != 0)
        return 0;
    const FT_Pos pixels = (m_face->glyph->advance.x + 32) >> 6;
    return static_cast<uint16_t>(std::clamp<FT_Pos>(pixels, 0, 0xFFFF));
}

int32_t FontFace::hintedAdvance(char32_t character, int32_t pixels)
{
    if (pixels != m_hintedPixels) {
        m_hintedPixels = FT_Set_Pixel_Sizes(m_face.get(), 0, FT_UInt(pixels)) == 0 ? pixels : 0;
        m_hintedAdvances = {};
    }
    KnownCharacter &place = m_hintedAdvances[character % m_hintedAdvances.size()];
    if (!place.isKnown || place.character != character)
        place = { true, character, 0,
                  m_hintedPixels > 0 ? readHintedAdvance(character) : uint16_t(0) };
    return place.advance;
}

int32_t FontFace::readKerning(FT_UInt left, FT_UInt right) const
{
    FT_Vector by{};
    if (FT_Get_Kerning(m_face.get(), left, right, FT_KERNING_UNSCALED, &by) != 0)
        return 0;
    return static_cast<int32_t>(std::clamp<FT_Pos>(by.x, -0xFFFF, 0xFFFF));
}

int32_t FontFace::kerning(char32_t left, char32_t right)
{
    if (left == 0 && right == 0)
        return 0;
    KnownPair &place = m_pairs[(left * 31 + right) % m_pairs.size()];
    if (place.left != left || place.right != right)
        place = { left, right, readKerning(known(left).glyph, known(right).glyph) };
    return place.kerning;
}

std::vector<CharacterShape> FontFace::characters(std::u32string_view text)
{
    const bool isKerned = FT_HAS_KERNING(m_face.get());
    std::vector<CharacterShape> shapes(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const KnownCharacter &character = known(text[i]);
        shapes[i].advance = character.advance;
        shapes[i].hasGlyph = character.glyph != 0;
        if (isKerned && i > 0)
            shapes[i].kerning = kerning(text[i - 1], text[i]);
    }
    return shapes;
}

static PointD pointOf(const FT_Vector *at)
{
    return { double(at->x), -double(at->y) };
}

Path FontFace::outline(char32_t character, FaceStyle lacking) const
{
    Path path;
    if (!FT_IS_SCALABLE(m_face.get())
        || FT_Load_Glyph(m_face.get(), glyphIndex(character), FT_LOAD_NO_SCALE) != 0
        || m_face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return path;
    FT_Outline_Funcs calls{};
    calls.move_to = [](const FT_Vector *to, void *user) {
        auto &out = *static_cast<Path *>(user);
        out.close();
        out.moveTo(pointOf(to));
        return 0;
    };
    calls.line_to = [](const FT_Vector *to, void *user) {
        static_cast<Path *>(user)->lineTo(pointOf(to));
        return 0;
    };
    calls.conic_to = [](const FT_Vector *control, const FT_Vector *to, void *user) {
        auto &out = *static_cast<Path *>(user);
        const PointD from = out.current(), middle = pointOf(control), end = pointOf(to);
        const auto toward = [&middle](PointD p) {
            return PointD{ p.x + (middle.x - p.x) * 2 / 3, p.y + (middle.y - p.y) * 2 / 3 };
        };
        out.curveTo(toward(from), toward(end), end);
        return 0;
    };
    calls.cubic_to = [](const FT_Vector *first, const FT_Vector *second, const FT_Vector *to,
                        void *user) {
        static_cast<Path *>(user)->curveTo(pointOf(first), pointOf(second), pointOf(to));
        return 0;
    };
    // Letters are made bold sideways only, so that they do not grow beyond their lines.
    constexpr FT_Pos kBoldnessOfEm = 24;
    if (lacking.isBold)
        FT_Outline_EmboldenXY(&m_face->glyph->outline, m_tables.unitsPerEm / kBoldnessOfEm, 0);
    if (FT_Outline_Decompose(&m_face->glyph->outline, &calls, &path) != 0)
        return {};
    path.close();
    constexpr double kSlant = 0.2; // as much as viewers take
    if (lacking.isItalic)
        path.transform({ 1, 0, -kSlant, 1, 0, 0 });
    return path;
}

FontShape FontFace::shape() const
{
    FontShape shape;
    shape.tables = m_tables;
    shape.underline = m_face->underline_position;
    shape.underlineThickness = m_face->underline_thickness;
    const auto *os2 = static_cast<const TT_OS2 *>(FT_Get_Sfnt_Table(m_face.get(), FT_SFNT_OS2));
    if (os2 != nullptr) {
        shape.strikeOut = os2->yStrikeoutPosition;
        shape.strikeOutThickness = os2->yStrikeoutSize;
    }
    return shape;
}

void FontFace::readCharacters()
{
    m_characters.assign(0x10000, 0);
    FT_UInt glyph = 0;
    FT_ULong character = FT_Get_First_Char(m_face.get(), &glyph);
    while (glyph != 0 && character <= 0xFFFF) {
        if (glyph <= 0xFFFF && m_characters[glyph] == 0)
            m_characters[glyph] = static_cast<char16_t>(character);
        character = FT_Get_Next_Char(m_face.get(), character, &glyph);
    }
}

std::u16string FontFace::charactersOfGlyphs(std::u16string_view glyphs)
{
    if (m_characters.empty())
        readCharacters();
    std::u16string text(glyphs);
    for (char16_t &unit : text)
        unit = m_characters[unit];
    return text;
}

std::u16string FontFace::textOfGlyphs(std::u16string_view glyphs)
{
    std::u16string text = charactersOfGlyphs(glyphs);
    return text.find(u'\0') == text.npos ? text : std::u16string();
}

} // namespace svgtool
