#include "core/fonts/GlyphOrder.h"

#include "core/text/FaceNames.h"

#include <algorithm>
#include <iterator>

namespace svgtool {

// The standard order of TrueType's post table, format 1, from its number 3 on.
static constexpr std::u16string_view kStandard =
        u" !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuv"
        u"wxyz{|}~ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈∆«»…\u00A0"
        u"ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄¤‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇŁłŠšŽž¦ÐðÝýÞþ−×¹²³½¼¾₣Ğğİ"
        u"ŞşĆćČčđ";

static constexpr std::u16string_view kFacesOfStandardOrder[] = {
    u"arial",       u"arial black",     u"arial narrow", u"comic sans ms",
    u"courier new", u"georgia",         u"impact",       u"microsoft sans serif",
    u"tahoma",      u"times new roman", u"trebuchet ms", u"verdana",
};

namespace {

    // Alphabets of Arial, Times New Roman and Courier New.
    struct Alphabet
    {
        char16_t firstGlyph, first, last;
    };
    constexpr Alphabet kAlphabets[] = {
        { 570, u'А', u'я' },
        { 672, u'א', u'ת' },
    };

} // namespace

static char16_t characterOf(char16_t glyph, bool hasAlphabets)
{
    constexpr char16_t kFirst = 3;
    if (glyph >= kFirst && size_t(glyph - kFirst) < kStandard.size())
        return kStandard[size_t(glyph - kFirst)];
    for (const Alphabet &each : kAlphabets) {
        if (hasAlphabets && glyph >= each.firstGlyph
            && glyph <= each.firstGlyph + each.last - each.first)
            return char16_t(each.first + glyph - each.firstGlyph);
    }
    return 0;
}

std::u16string charactersInKnownOrder(std::u16string_view glyphs, std::u16string_view face)
{
    const std::u16string name = foldedFace(face);
    const bool hasAlphabets =
            name == u"arial" || name == u"times new roman" || name == u"courier new";
    const bool isKnown =
            std::ranges::find(kFacesOfStandardOrder, name) != std::end(kFacesOfStandardOrder);
    std::u16string text(glyphs.size(), u'\0');
    if (isKnown)
        std::ranges::transform(glyphs, text.begin(), [hasAlphabets](char16_t glyph) {
            return characterOf(glyph, hasAlphabets);
        });
    return text;
}

} // namespace svgtool
