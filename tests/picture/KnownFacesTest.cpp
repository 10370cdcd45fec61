// The table of widths beside the fonts that it was made of.

#include "core/fonts/KnownFaces.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace svgtool {

struct KnownCase
{
    const char *name;
    std::u16string_view installed, other; ///< of the same metrics
    int32_t weight;
    bool isItalic;
};

void PrintTo(const KnownCase &each, std::ostream *out)
{
    *out << each.name;
}

class KnownFaces : public testing::TestWithParam<KnownCase>
{
};

TEST_P(KnownFaces, AreAsTheirFonts)
{
    const KnownCase &face = GetParam();
    const FontRequest request{ std::u16string(face.installed), face.weight, face.isItalic };
    const FontShape shape = fontShape(request);
    // Only its font has notes.
    if (!shape.isNamed || !characterShapes(U"♪", request).front().hasGlyph)
        GTEST_SKIP() << "the font is not installed";
    const auto known = KnownFace::find({ std::u16string(face.other), face.weight, face.isItalic });
    ASSERT_TRUE(known);
    const FontShape same = known->shape();
    EXPECT_TRUE(same.isNamed);
    EXPECT_EQ(same.tables.unitsPerEm, shape.tables.unitsPerEm);
    EXPECT_EQ(same.tables.winAscent, shape.tables.winAscent);
    EXPECT_EQ(same.tables.winDescent, shape.tables.winDescent);
    EXPECT_EQ(same.tables.lineGap, shape.tables.lineGap);
    EXPECT_EQ(same.tables.averageWidth, shape.tables.averageWidth);
    EXPECT_EQ(same.underline, shape.underline);
    EXPECT_EQ(same.underlineThickness, shape.underlineThickness);
    EXPECT_EQ(same.strikeOut, shape.strikeOut);

    std::u32string text;
    for (char32_t left = U' '; left < 0x7F; ++left)
        for (char32_t right = U' '; right < 0x7F; ++right)
            text += { left, right };
    for (char32_t character = 0xA0; character <= 0x2265; ++character)
        text += { character, U'\n' };
    const auto expected = characterShapes(text, request), found = known->characters(text);
    const auto differs = [&](size_t i) {
        return found[i].hasGlyph
                && (found[i].advance != expected[i].advance
                    || found[i].kerning != expected[i].kerning);
    };
    for (size_t i = 0; i < text.size(); ++i)
        ASSERT_FALSE(differs(i)) << std::hex << unsigned(text[i]) << " behind "
                                 << unsigned(i > 0 ? text[i - 1] : 0);
    EXPECT_GT(std::ranges::count_if(found, &CharacterShape::hasGlyph), 2 * 95 * 95 + 450);
}

static constexpr KnownCase kCases[] = {
    { "Sans", u"Liberation Sans", u"ARIAL", 400, false },
    { "SansBold", u"Liberation Sans", u"Arial", 700, false },
    { "SansItalic", u"Liberation Sans", u"Arial", 400, true },
    { "SansBoldItalic", u"Liberation Sans", u"Arial", 700, true },
    { "Serif", u"Liberation Serif", u"Times New Roman", 400, false },
    { "SerifBold", u"Liberation Serif", u"Times New Roman", 700, false },
    { "SerifItalic", u"Liberation Serif", u"Times New Roman", 400, true },
    { "SerifBoldItalic", u"Liberation Serif", u"Times New Roman", 700, true },
    { "Mono", u"Liberation Mono", u"Courier New", 400, false },
    { "MonoBold", u"Liberation Mono", u"Courier New", 700, true },
};
INSTANTIATE_TEST_SUITE_P(Fonts, KnownFaces, testing::ValuesIn(kCases),
                         testing::PrintToStringParamName());

TEST(SubstituteFace, AllOthersHaveASubstitute)
{
    const FontRequest request{ u"Papyrus", 400, false };
    EXPECT_FALSE(KnownFace::find(request));
    const KnownFace substitute = KnownFace::substitute(request);
    EXPECT_FALSE(substitute.shape().isNamed);
    const auto shapes = substitute.characters(U"A\u4E2D");
    EXPECT_EQ(shapes[0].advance, 1366);
    EXPECT_EQ(shapes[1].advance, 2048);
    EXPECT_FALSE(shapes[1].hasGlyph);
}

// A family of one face.
TEST(CharacterOutlines, AreMadeBoldAndSlanted)
{
    const std::u16string face = u"DejaVu Math TeX Gyre";
    if (!fontShape({ face, 400, false }).isNamed)
        GTEST_SKIP() << "the font is not installed";
    const auto boundsOf = [&](int32_t weight, bool isItalic) {
        return characterOutlines(U"H", { face, weight, isItalic }).front().bounds();
    };
    const RectD plain = boundsOf(400, false), bold = boundsOf(700, false);
    EXPECT_NEAR(bold.width() - plain.width(), 1000.0 / 24, 2); // units, a 24th of the em
    EXPECT_EQ(bold.height(), plain.height());
    const RectD slanted = boundsOf(400, true);
    EXPECT_NEAR(slanted.width() - plain.width(), 0.2 * plain.height(), 1e-6);
    EXPECT_EQ(slanted.height(), plain.height());
}

} // namespace svgtool
