#pragma once

#include "core/fonts/FontShapes.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <array>
#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace svgtool {

/// Calls a function of a C library on what it is to free.
template<auto function>
struct Call
{
    template<class T>
    void operator()(T *object) const
    {
        function(object);
    }
};

using OpenFace = std::unique_ptr<FT_FaceRec_, Call<FT_Done_Face>>;

/// Of the four faces of a family one.
struct FaceStyle
{
    bool isBold = false, isItalic = false;

    auto operator<=>(const FaceStyle &) const = default;
};

/// Where a face is.
struct FontFile
{
    std::string path;
    int index = 0;

    bool operator==(const FontFile &) const = default;
};

/// An open font file. What it keeps is bounded whatever texts are measured with it.
/// @note Not to be used by two threads at a time, as all of FreeType.
class FontFace
{
public:
    FontFace(FontFile file, OpenFace face);

    const FontFile &file() const { return m_file; }
    const FontTables &tables() const { return m_tables; }
    /// In font units, 0 to 65535.
    int32_t advance(char32_t character);
    /// Whether the font asks for sharp edges, to which its outlines are hinted.
    /// @param pixels  of the em
    bool isHintedAt(int32_t pixels) const;
    /// In pixels, at a size at which it is hinted.
    int32_t hintedAdvance(char32_t character, int32_t pixels);
    /// As characterShapes.
    std::vector<CharacterShape> characters(std::u32string_view text);
    /// In font units, y downwards; empty where there is none.
    /// @param lacking  what letters are made bold or slanted by, since the face is not
    Path outline(char32_t character, FaceStyle lacking = {}) const;
    /// The numbers of the lines that go with a text; isNamed is for the caller to know.
    FontShape shape() const;
    /// As svgtool::textOfGlyphs.
    std::u16string textOfGlyphs(std::u16string_view glyphs);
    /// As svgtool::charactersOfGlyphs.
    std::u16string charactersOfGlyphs(std::u16string_view glyphs);

private:
    struct KnownCharacter
    {
        bool isKnown = false;
        char32_t character = 0;
        FT_UInt glyph = 0;
        uint16_t advance = 0;
    };
    struct KnownPair
    {
        char32_t left = 0, right = 0;
        int32_t kerning = 0;
    };

    const KnownCharacter &known(char32_t character);
    /// By which viewers move @p right towards @p left, in font units.
    int32_t kerning(char32_t left, char32_t right);
    int32_t readKerning(FT_UInt left, FT_UInt right) const;
    FT_UInt glyphIndex(char32_t character) const;
    uint16_t readAdvance(FT_UInt glyph) const;
    uint16_t readHintedAdvance(char32_t character) const;
    void readCharacters();

    FontFile m_file;
    OpenFace m_face;
    FontTables m_tables;
    using Characters = std::array<KnownCharacter, 1024>; // a character's place is its remainder
    Characters m_known;
    std::array<KnownPair, 1024> m_pairs; // likewise; that of two zeros is not kerned
    int32_t m_hintedPixels = 0; // of the size that is set, 0 for none
    Characters m_hintedAdvances;
    std::vector<char16_t> m_characters; // by glyph number, 0 for none; filled when first needed
};

} // namespace svgtool
