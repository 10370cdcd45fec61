#include "core/fonts/FontCatalog.h"
#include "core/fonts/FontEngine.h"
#include "core/fonts/FontScaling.h"

#include <algorithm>

// Metrics from the tables of the font files, as GDI computes them. fontconfig finds the files and
// FreeType reads them; neither renders anything.

namespace svgtool {

static bool isLineBreak(char16_t unit)
{
    return unit == u'\n' || unit == u'\r';
}

static int64_t lineWidth(FontFace &face, std::u16string_view line, int64_t scale)
{
    int64_t width = 0;
    for (size_t i = 0; i < line.size(); ++i) {
        // A prefix counts nothing and makes an ampersand after it count as a character.
        if (line[i] == u'&' && i + 1 < line.size())
            ++i;
        width += scaledAdvance(face.advance(line[i]), scale);
    }
    return width;
}

static TextExtent measure(FontFace &face, std::u16string_view text, int32_t pixels)
{
    const int64_t scale = fixedScale(face.tables(), pixels);
    int64_t width = 0;
    int64_t lines = 0;
    size_t start = 0;
    do {
        size_t end = start;
        while (end < text.size() && !isLineBreak(text[end]))
            ++end;
        width = std::max(width, lineWidth(face, text.substr(start, end - start), scale));
        ++lines;
        // The two break characters side by side, in either order, are one break.
        const bool isPair =
                end + 1 < text.size() && isLineBreak(text[end + 1]) && text[end + 1] != text[end];
        start = end + (isPair ? 2 : 1);
    } while (start < text.size()); // so a break at the end adds no line

    TextExtent extent;
    extent.font = scaledMetrics(face.tables(), pixels);
    extent.width = clampToInt32(width);
    extent.height = clampToInt32(lines * extent.font.height);
    return extent;
}

FontMetrics fontMetrics(std::u16string_view faceName, int32_t weight, int32_t height)
{
    FontEngine &shared = fontEngine();
    const std::lock_guard lock(shared.mutex);
    const auto face = shared.catalog.face(faceName, weight);
    if (!face)
        return {};
    return scaledMetrics(face->tables(), pixelsPerEm(face->tables(), height));
}

TextExtent textExtent(std::u16string_view text, std::u16string_view faceName, int32_t weight,
                      int32_t height)
{
    FontEngine &shared = fontEngine();
    const std::lock_guard lock(shared.mutex);
    const auto face = shared.catalog.face(faceName, weight);
    if (!face)
        return {};
    return measure(*face, text, pixelsPerEm(face->tables(), height));
}

std::u16string textOfGlyphs(std::u16string_view glyphs, std::u16string_view faceName,
                            int32_t weight)
{
    FontEngine &shared = fontEngine();
    const std::lock_guard lock(shared.mutex);
    const auto face = shared.catalog.face(faceName, weight);
    return face ? face->textOfGlyphs(glyphs) : std::u16string();
}

int32_t horizontalDpi()
{
    return 96; // no screen is asked
}

} // namespace svgtool
