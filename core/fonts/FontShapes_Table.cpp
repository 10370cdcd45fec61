#include "core/fonts/FontShapes.h"

#include "core/fonts/GlyphOrder.h"
#include "core/fonts/KnownFaces.h"

// Shapes from the table of widths alone, where no font can be asked, as in a browser.

namespace svgtool {

static KnownFace faceOf(const FontRequest &request)
{
    return KnownFace::find(request).value_or(KnownFace::substitute(request));
}

FontShape fontShape(const FontRequest &request)
{
    return faceOf(request).shape();
}

std::vector<CharacterShape> characterShapes(std::u32string_view text, const FontRequest &request)
{
    return faceOf(request).characters(text);
}

std::vector<int32_t> hintedAdvances(std::u32string_view, const FontRequest &, int32_t)
{
    return {};
}

std::vector<Path> characterOutlines(std::u32string_view text, const FontRequest &)
{
    return std::vector<Path>(text.size());
}

std::u16string charactersOfGlyphs(std::u16string_view glyphs, const FontRequest &request)
{
    return charactersInKnownOrder(glyphs, request.face);
}

} // namespace svgtool
