#include "picture/svg/SvgParts.h"

namespace svgtool::picture {

void writeText(SvgDocument &document, const Text &text)
{
    document.put("<text");
    document.attribute("x", text.baseline.x);
    document.attribute("y", text.baseline.y);
    if (text.angle != 0) {
        document.put(" transform=\"rotate(");
        document.exact(-text.angle);
        document.put(' ');
        document.number(text.baseline.x);
        document.put(' ');
        document.number(text.baseline.y);
        document.put(")\"");
    }
    if (!text.advances.empty()) {
        double length = 0;
        for (const double advance : text.advances)
            length += advance;
        if (length > 0 && text.characters.size() > 1)
            document.attribute("textLength", length);
    }
    if (text.isUnderlined || text.isStruckOut)
        document.attribute("text-decoration",
                           !text.isStruckOut           ? "underline"
                                   : text.isUnderlined ? "underline line-through"
                                                       : "line-through");
}

void writeFont(SvgDocument &document, const Text &text, Property property)
{
    switch (property) {
    case Property::FontFamily:
        document.foreignAttribute(
                "font-family", text.face.empty() ? u"sans-serif" : std::u16string_view(text.face));
        break;
    case Property::FontSize:
        document.attribute("font-size", text.size);
        break;
    case Property::FontWeight:
        if (text.weight > 550)
            document.attribute("font-weight", "bold");
        break;
    case Property::FontStyle:
        if (text.isItalic)
            document.attribute("font-style", "italic");
        break;
    default:
        break;
    }
}

void writeTextEnd(SvgDocument &document, const Text &text)
{
    document.put('>');
    document.content(text.characters);
    document.put("</text>\n");
}

} // namespace svgtool::picture
