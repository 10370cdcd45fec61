#include "picture/svg/SvgParts.h"

#include <algorithm>

namespace svgtool::picture {

// Halves of pairs and what XML lacks are none: they may come out as something else or not at all.
static bool isLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z')
            || (unit >= 0xA0 && unit < 0xD800) || (unit >= 0xE000 && unit < 0xFFFE);
}

// Whether CSS takes a family's name without quotes: words that begin with a letter.
static bool isPlainName(std::u16string_view name)
{
    char16_t before = u' ';
    for (const char16_t unit : name) {
        const bool isInside = (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u' ';
        if (!isLetter(unit) && (before == u' ' || !isInside))
            return false;
        before = unit;
    }
    static constexpr std::u16string_view kKeywords[] = {
        u"serif",   u"sans-serif", u"monospace", u"cursive", u"fantasy",
        u"inherit", u"initial",    u"default",   u"unset",
    };
    std::u16string lower(name);
    for (char16_t &unit : lower)
        unit = unit >= u'A' && unit <= u'Z' ? char16_t(unit + 32) : unit;
    return before != u' ' && std::ranges::find(kKeywords, lower) == std::end(kKeywords);
}

static void writeFamilies(SvgDocument &document, const FontStyle &font)
{
    static constexpr std::u16string_view kGeneric[] = { u"sans-serif", u"serif", u"monospace",
                                                        u"cursive", u"fantasy" };
    std::u16string list;
    for (const std::u16string &family : font.families) {
        const bool isPlain = isPlainName(family);
        if (!isPlain)
            list += u'\'';
        for (const char16_t unit : family) {
            if (unit == u'\'' || unit == u'\\')
                list += u'\\';
            list += unit;
        }
        list += isPlain ? std::u16string_view(u",") : u"',";
    }
    list += kGeneric[size_t(font.generic)];
    document.foreignAttribute("font-family", list);
}

static void writeWeight(SvgDocument &document, uint16_t weight)
{
    constexpr uint16_t kRegular = 400, kBold = 700;
    if (weight == kBold) {
        document.attribute("font-weight", "bold");
    } else if (weight != kRegular) {
        const char digit = char('0' + weight / 100 % 10);
        document.put(" font-weight=\"", digit, "00\"");
    }
}

void writeFont(SvgDocument &document, const FontStyle &font, Property property)
{
    switch (property) {
    case Property::FontFamily:
        writeFamilies(document, font);
        break;
    case Property::FontSize:
        document.attribute("font-size", font.size);
        break;
    case Property::FontWeight:
        writeWeight(document, font.weight);
        break;
    case Property::FontStyle:
        if (font.isItalic)
            document.attribute("font-style", "italic");
        break;
    default:
        break;
    }
}

static void writeDecoration(SvgDocument &document, const FontStyle &font)
{
    if (font.isUnderlined || font.isStruckOut)
        document.attribute("text-decoration",
                           !font.isStruckOut           ? "underline"
                                   : font.isUnderlined ? "underline line-through"
                                                       : "line-through");
}

// Attributes x and y, which go on from what the element before says.
static void writePlace(SvgDocument &document, PointD place, PointD before)
{
    const Numbers &grid = document.grid();
    if (grid.steps(place.x) != grid.steps(before.x))
        document.attribute("x", place.x);
    if (grid.steps(place.y) != grid.steps(before.y))
        document.attribute("y", place.y);
}

void writeText(SvgDocument &document, const Text &text)
{
    document.put("<text");
    writePlace(document, placeOf(text, text.pieces.front()), {});
    if (text.turn != 0) {
        document.put(" transform=\"rotate(");
        // Half a thousandth of a pixel where the text ends, in degrees.
        constexpr double kDegrees = 28;
        Numbers::forPixel(document.unitsPerPixel() * kDegrees / reachOf(document.scene(), text))
                .append(document.text(), -text.turn);
        if (text.baseline != PointD()) {
            document.put(' ');
            document.number(text.baseline.x);
            document.put(' ');
            document.number(text.baseline.y);
        }
        document.put(")\"");
    }
    writeDecoration(document, document.scene().fonts[text.font]);
    if (text.order == Text::Order::RightToLeft)
        document.put(" direction=\"rtl\" unicode-bidi=\"embed\" text-anchor=\"end\"");
    else if (text.order == Text::Order::AsItStands)
        document.put(" unicode-bidi=\"bidi-override\"");
    const std::u16string_view characters = text.characters;
    if (!characters.empty()
        && (characters.front() == u' ' || characters.back() == u' '
            || characters.find(u"  ") != characters.npos))
        document.put(" xml:space=\"preserve\"");
}

// Not all viewers take lists of places, so each piece but the first is an element.
void writeTextEnd(SvgDocument &document, const Text &text)
{
    const std::u16string_view characters = text.characters;
    document.put('>');
    for (size_t i = 0; i < text.pieces.size(); ++i) {
        const size_t first = text.pieces[i].first;
        const size_t end =
                i + 1 < text.pieces.size() ? text.pieces[i + 1].first : characters.size();
        if (i > 0) {
            // Its x is told even where it is that of the piece before, whose letters move on.
            const PointD place = placeOf(text, text.pieces[i]);
            document.put("<tspan");
            document.attribute("x", place.x);
            writePlace(document, place, { place.x, placeOf(text, text.pieces[i - 1]).y });
            document.put('>');
        }
        document.content(characters.substr(first, end - first));
        if (i > 0)
            document.put("</tspan>");
    }
    document.put("</text>\n");
}

} // namespace svgtool::picture
