#include "core/fonts/FontShapes.h"

#include "core/fonts/FontCatalog.h"
#include "core/fonts/GlyphOrder.h"

namespace svgtool {

FontShape fontShape(const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    if (!face) {
        FontShape none;
        none.tables = { 1000, 905, 212, 905, -212, 33, 441 }; // of the usual letters without serifs
        none.underline = -106;
        none.underlineThickness = 73;
        none.strikeOut = 259;
        none.strikeOutThickness = 50;
        return none;
    }
    FontShape shape = face->shape();
    shape.isNamed = engine.catalog.presence(request.face, request.weight, request.isItalic)
            != FontCatalog::Presence::Missing;
    return shape;
}

std::vector<CharacterShape> characterShapes(std::u32string_view text, const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    std::vector<CharacterShape> shapes(text.size());
    for (size_t i = 0; face && i < text.size(); ++i) {
        shapes[i].advance = face->advance(text[i]);
        shapes[i].hasGlyph = face->hasGlyph(text[i]);
        if (i > 0)
            shapes[i].kerning = face->kerning(text[i - 1], text[i]);
    }
    return shapes;
}

std::vector<int32_t> hintedAdvances(std::u32string_view text, const FontRequest &request,
                                    int32_t pixels)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    std::vector<int32_t> advances;
    if (!face || !face->isHintedAt(pixels))
        return advances;
    for (const char32_t character : text)
        advances.push_back(face->hintedAdvance(character, pixels));
    return advances;
}

std::vector<Path> characterOutlines(std::u32string_view text, const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    std::vector<Path> outlines(text.size());
    for (size_t i = 0; face && i < text.size(); ++i)
        outlines[i] = face->outline(text[i]);
    return outlines;
}

std::u16string charactersOfGlyphs(std::u16string_view glyphs, const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    // Twins have the same metrics, but an order of their own.
    const bool isInstalled = engine.catalog.presence(request.face, request.weight, request.isItalic)
            == FontCatalog::Presence::Installed;
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    return isInstalled && face ? face->charactersOfGlyphs(glyphs)
                               : charactersInKnownOrder(glyphs, request.face);
}

} // namespace svgtool
