// Shapes of characters that need no font, told of in tests/golden/README.md. Linking them keeps the
// engine's out: they are one object file of a library.

#include "core/fonts/FontShapes.h"

namespace svgtool {

static bool hasGlyph(char32_t character)
{
    return character < 0xE000 || character > 0xF8FF;
}

FontShape fontShape(const FontRequest &request)
{
    FontShape shape;
    shape.isNamed = request.face != u"Missing";
    shape.tables = { 1000, 1000, 250, 1000, -250, 0, 500 };
    shape.underline = -100;
    shape.underlineThickness = shape.strikeOutThickness = 50;
    shape.strikeOut = 250;
    return shape;
}

std::vector<CharacterShape> characterShapes(std::u32string_view text, const FontRequest & /*font*/)
{
    std::vector<CharacterShape> shapes;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isNear = i > 0 && text[i - 1] == U'A' && text[i] == U'V';
        shapes.push_back({ 500, isNear ? -100 : 0, hasGlyph(text[i]) });
    }
    return shapes;
}

std::vector<int32_t> hintedAdvances(std::u32string_view text, const FontRequest &font,
                                    int32_t pixels)
{
    const bool isHinted = font.face == u"Hinted" && pixels < 18;
    return std::vector<int32_t>(isHinted ? text.size() : 0, pixels / 2 - 1);
}

std::vector<Path> characterOutlines(std::u32string_view text, const FontRequest & /*font*/)
{
    Path box;
    box.addRect({ 0, -500, 500, 0 });
    std::vector<Path> outlines(text.size(), box);
    Path ring; // of four parabolas that mirror one another
    ring.moveTo({ 0, -300 });
    ring.curveTo({ 0, -500 }, { 100, -600 }, { 300, -600 });
    ring.curveTo({ 500, -600 }, { 600, -500 }, { 600, -300 });
    ring.curveTo({ 600, -100 }, { 500, 0 }, { 300, 0 });
    ring.curveTo({ 100, 0 }, { 0, -100 }, { 0, -300 });
    ring.close();
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == U'O')
            outlines[i] = ring;
        else if (text[i] == U' ')
            outlines[i].clear();
    }
    return outlines;
}

std::u16string charactersOfGlyphs(std::u16string_view glyphs, const FontRequest &font)
{
    const bool isThere = font.face != u"Missing";
    std::u16string text(glyphs);
    for (char16_t &unit : text)
        unit = isThere && unit >= 1 && unit <= 26 ? char16_t(u'@' + unit) : u'\0';
    return text;
}

} // namespace svgtool
