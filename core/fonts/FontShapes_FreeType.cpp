#include "core/fonts/FontShapes.h"

#include "core/fonts/FontCatalog.h"
#include "core/fonts/GlyphOrder.h"
#include "core/fonts/KnownFaces.h"

#include <optional>

namespace svgtool {

// What is known of a face whose font is not installed; nothing if a font tells more.
static std::optional<KnownFace> knownFace(FontCatalog &catalog, const FontRequest &request)
{
    using Presence = FontCatalog::Presence;
    const auto isMissing = [&](std::u16string_view face) {
        return catalog.presence(face, request.weight, request.isItalic) == Presence::Missing;
    };
    if (!isMissing(request.face))
        return std::nullopt;
    const auto known = KnownFace::find(request);
    return !known && isMissing(u"Arial") ? KnownFace::substitute(request) : known;
}

namespace {

    /// What stands for a face: numbers that are known without its font, or an open one.
    struct Measured
    {
        FontRequest request;
        std::optional<KnownFace> known;
        std::shared_ptr<FontFace> face; ///< null where there is none
    };

} // namespace

// That of the text before, which mostly has the same face; the engine's lock guards it.
static const Measured &measured(FontEngine &engine, const FontRequest &request)
{
    static std::optional<Measured> latest;
    if (!latest || latest->request != request)
        latest = { request, knownFace(engine.catalog, request),
                   engine.catalog.face(request.face, request.weight, request.isItalic) };
    return *latest;
}

FontShape fontShape(const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    if (const auto known = knownFace(engine.catalog, request))
        return known->shape();
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    if (!face) // its file is gone
        return KnownFace::substitute(request).shape();
    FontShape shape = face->shape();
    shape.isNamed = engine.catalog.presence(request.face, request.weight, request.isItalic)
            != FontCatalog::Presence::Missing;
    return shape;
}

std::vector<CharacterShape> characterShapes(std::u32string_view text, const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const Measured &by = measured(engine, request);
    if (by.known || !by.face)
        return by.known.value_or(KnownFace::substitute(request)).characters(text);
    return by.face->characters(text);
}

std::vector<int32_t> hintedAdvances(std::u32string_view text, const FontRequest &request,
                                    int32_t pixels)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const Measured &by = measured(engine, request);
    std::vector<int32_t> advances;
    if (by.known || !by.face || !by.face->isHintedAt(pixels))
        return advances;
    advances.reserve(text.size());
    for (const char32_t character : text)
        advances.push_back(by.face->hintedAdvance(character, pixels));
    return advances;
}

std::vector<Path> characterOutlines(std::u32string_view text, const FontRequest &request)
{
    FontEngine &engine = fontEngine();
    const std::lock_guard lock(engine.mutex);
    const auto face = engine.catalog.face(request.face, request.weight, request.isItalic);
    const FaceStyle lacking =
            engine.catalog.lacking(request.face, request.weight, request.isItalic);
    std::vector<Path> outlines(text.size());
    for (size_t i = 0; face && i < text.size(); ++i)
        outlines[i] = face->outline(text[i], lacking);
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
