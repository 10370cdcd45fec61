#include "picture/gdi/TextLayout.h"

#include "core/text/FaceNames.h"

#include <algorithm>
#include <string_view>

namespace svgtool::picture {

using Generic = FontStyle::Generic;

namespace {

    /// Faces of the same metrics, or as near as there are, which stand in for one another.
    struct Twins
    {
        std::u16string_view face;
        std::u16string_view first, second; ///< tried after it; empty for none
        Generic generic;
    };
    constexpr Twins kTwins[] = {
        { u"arial", u"Liberation Sans", {}, Generic::SansSerif },
        { u"liberation sans", u"Arial", {}, Generic::SansSerif },
        { u"helvetica", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"helv", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"ms sans serif", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"microsoft sans serif", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"ms shell dlg", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"ms shell dlg 2", u"Tahoma", {}, Generic::SansSerif },
        { u"system", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"small fonts", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"arial unicode ms", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"arimo", u"Arial", u"Liberation Sans", Generic::SansSerif },
        { u"arial narrow", u"Liberation Sans Narrow", {}, Generic::SansSerif },
        { u"liberation sans narrow", u"Arial Narrow", {}, Generic::SansSerif },
        { u"helvetica narrow", u"Arial Narrow", u"Liberation Sans Narrow", Generic::SansSerif },
        { u"segoe ui", u"Selawik", {}, Generic::SansSerif },
        { u"century gothic", u"URW Gothic", {}, Generic::SansSerif },
        { u"tahoma", u"Verdana", u"DejaVu Sans", Generic::SansSerif },
        { u"verdana", u"DejaVu Sans", {}, Generic::SansSerif },
        { u"calibri", u"Carlito", {}, Generic::SansSerif },
        { u"carlito", u"Calibri", {}, Generic::SansSerif },
        { u"times new roman", u"Liberation Serif", {}, Generic::Serif },
        { u"liberation serif", u"Times New Roman", {}, Generic::Serif },
        { u"times", u"Times New Roman", u"Liberation Serif", Generic::Serif },
        { u"tms rmn", u"Times New Roman", u"Liberation Serif", Generic::Serif },
        { u"ms serif", u"Times New Roman", u"Liberation Serif", Generic::Serif },
        { u"roman", u"Times New Roman", u"Liberation Serif", Generic::Serif },
        { u"tinos", u"Times New Roman", u"Liberation Serif", Generic::Serif },
        { u"cambria", u"Caladea", {}, Generic::Serif },
        { u"cambria math", u"Cambria", u"Caladea", Generic::Serif },
        { u"caladea", u"Cambria", {}, Generic::Serif },
        { u"georgia", u"Gelasio", {}, Generic::Serif },
        { u"gelasio", u"Georgia", {}, Generic::Serif },
        { u"palatino linotype", u"Palatino", u"P052", Generic::Serif },
        { u"book antiqua", u"Palatino Linotype", u"P052", Generic::Serif },
        { u"bookman old style", u"Bookman", u"URW Bookman", Generic::Serif },
        { u"century schoolbook", u"New Century Schoolbook", u"C059", Generic::Serif },
        { u"cousine", u"Courier New", u"Liberation Mono", Generic::Monospace },
        { u"courier new", u"Liberation Mono", {}, Generic::Monospace },
        { u"liberation mono", u"Courier New", {}, Generic::Monospace },
        { u"courier", u"Courier New", u"Liberation Mono", Generic::Monospace },
        { u"fixedsys", u"Courier New", u"Liberation Mono", Generic::Monospace },
        { u"terminal", u"Courier New", u"Liberation Mono", Generic::Monospace },
        { u"consolas", u"Inconsolata", {}, Generic::Monospace },
        { u"lucida console", u"DejaVu Sans Mono", {}, Generic::Monospace },
        { u"comic sans ms", u"Comic Relief", u"Comic Neue", Generic::Cursive },
    };

    // Families, [MS-WMF] 2.2.2.14 and 2.1.1.24.
    constexpr uint8_t kFixedPitch = 1, kRoman = 0x10, kModern = 0x30, kScript = 0x40,
                      kDecorative = 0x50;

} // namespace

static Generic genericOf(const Font &font)
{
    switch (font.pitchAndFamily & 0xF0) {
    case kRoman:
        return Generic::Serif;
    case kModern:
        return Generic::Monospace;
    case kScript:
        return Generic::Cursive;
    case kDecorative:
        return Generic::Fantasy;
    default:
        return (font.pitchAndFamily & 3) == kFixedPitch ? Generic::Monospace : Generic::SansSerif;
    }
}

static uint16_t weightOf(int32_t weight)
{
    // A face is regular or bold to GDI; only what is far from both keeps its own weight.
    constexpr int32_t kLight = 350, kLastRegular = 550, kLastBold = 750;
    if (weight <= 0 || (weight > kLight && weight <= kLastRegular))
        return 400;
    if (weight > kLastRegular && weight <= kLastBold)
        return 700;
    return uint16_t((std::clamp(weight, 100, 900) + 50) / 100 * 100);
}

// Symbols are written as the characters they are. Fonts that have these come before the one named,
// in which the viewer would take some of them, × among them, for codes of other symbols; that one
// is left what Unicode has no character for.
static void nameSymbols(FontStyle &style, SymbolFont symbols)
{
    const bool isText = symbols == SymbolFont::Symbol || symbols == SymbolFont::MathExtra;
    const std::u16string named = style.families.front();
    if (isText)
        style.families = { u"Times New Roman", u"Liberation Serif", u"Cambria Math",
                           u"DejaVu Sans" };
    else
        style.families = { u"Segoe UI Symbol", u"Noto Sans Symbols2", u"DejaVu Sans" };
    style.families.push_back(named);
    style.generic = isText ? Generic::Serif : Generic::SansSerif;
}

FontStyle fontStyleOf(const Font &font)
{
    FontStyle style;
    style.weight = weightOf(font.weight);
    style.isItalic = font.isItalic;
    style.isUnderlined = font.isUnderlined;
    style.isStruckOut = font.isStruckOut;
    style.generic = genericOf(font);
    std::u16string face = font.face;
    if (!face.empty() && face.front() == u'@') // letters for vertical lines
        face.erase(0, 1);
    if (!face.empty())
        style.families.push_back(face);
    if (const SymbolFont symbols = symbolFont(face); symbols != SymbolFont::None) {
        nameSymbols(style, symbols);
        return style;
    }
    const FaceName name = readFaceName(face);
    if (!name.twin.empty())
        style.families.emplace_back(name.twin);
    if (name.family.size() < face.size())
        style.families.emplace_back(name.family);
    const auto *const twins = std::ranges::find(kTwins, foldedFace(name.family), &Twins::face);
    if (twins != std::end(kTwins)) {
        style.generic = twins->generic;
        for (const std::u16string_view other : { twins->first, twins->second }) {
            if (!other.empty())
                style.families.emplace_back(other);
        }
    } else if (face.empty()) {
        style.families = { u"Arial", u"Liberation Sans" };
    }
    return style;
}

} // namespace svgtool::picture
