#include "core/fonts/KnownFaces.h"

#include "core/fonts/KnownFaces_Data.h"
#include "core/text/FaceNames.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace svgtool {

namespace {

    constexpr size_t kSans = 0, kSerif = 1, kMono = 2, kStyles = 4;

    struct Name
    {
        std::u16string_view face;
        size_t family;
    };
    constexpr Name kNames[] = {
        { u"arial", kSans },
        { u"liberation sans", kSans },
        { u"arimo", kSans },
        { u"times new roman", kSerif },
        { u"liberation serif", kSerif },
        { u"tinos", kSerif },
        { u"courier new", kMono },
        { u"liberation mono", kMono },
        { u"cousine", kMono },
    };

} // namespace

KnownFace::KnownFace(size_t family, const FontRequest &request, bool isNamed)
    : m_family(family), m_style(size_t(isBold(request.weight)) + 2 * size_t(request.isItalic)),
      m_isNamed(isNamed)
{
}

std::optional<KnownFace> KnownFace::find(const FontRequest &request)
{
    const auto *const name = std::ranges::find(kNames, foldedFace(request.face), &Name::face);
    if (name == std::end(kNames))
        return std::nullopt;
    return KnownFace(name->family, request, true);
}

KnownFace KnownFace::substitute(const FontRequest &request)
{
    return { kSans, request, false };
}

FontShape KnownFace::shape() const
{
    FontShape shape = known::kShapes[m_family * kStyles + m_style];
    shape.isNamed = m_isNamed;
    return shape;
}

// The number of a character among all of the runs.
static std::optional<size_t> placeOf(char32_t character)
{
    size_t before = 0;
    for (const known::Run &run : known::kRuns) {
        if (character >= run.first && character <= run.last)
            return before + (character - run.first);
        before += size_t(run.last - run.first) + 1;
    }
    return std::nullopt;
}

CharacterShape KnownFace::character(char32_t character, char32_t before) const
{
    constexpr char32_t kFirstWide = 0x1100; // from where most are as wide as high
    CharacterShape shape;
    const FontTables &tables = known::kShapes[m_family * kStyles + m_style].tables;
    const auto place = placeOf(character);
    shape.hasGlyph = place.has_value();
    if (m_family == kMono || !place) {
        const bool isWide = !place && character >= kFirstWide;
        shape.advance = isWide ? tables.unitsPerEm : tables.averageWidth;
        return shape;
    }
    const size_t column = m_family * kStyles + m_style;
    shape.advance = known::kWidths[known::kWidthOf[*place]].of[column];
    const auto pairs = m_family == kSans ? known::kSansPairs : known::kSerifPairs;
    const auto key = [](const known::Pair &pair) {
        return std::pair<char32_t, char32_t>(pair.left, pair.right);
    };
    const auto pair = std::ranges::lower_bound(pairs, std::pair(before, character), {}, key);
    if (pair != pairs.end() && key(*pair) == std::pair(before, character))
        shape.kerning = pair->by[m_style];
    return shape;
}

std::vector<CharacterShape> KnownFace::characters(std::u32string_view text) const
{
    std::vector<CharacterShape> shapes;
    shapes.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i)
        shapes.push_back(character(text[i], i > 0 ? text[i - 1] : U'\0'));
    return shapes;
}

int32_t symbolAdvance(SymbolFont font, char32_t code)
{
    constexpr char32_t kFirst = 0x20, kPrivate = 0xF000;
    const size_t place = (code >= kPrivate ? code - kPrivate : code) - kFirst;
    std::span<const uint16_t> widths;
    if (font == SymbolFont::Symbol)
        widths = known::kSymbolWidths;
    else if (font == SymbolFont::Dingbats)
        widths = known::kDingbatsWidths;
    return place < widths.size() ? widths[place] : 0;
}

} // namespace svgtool
