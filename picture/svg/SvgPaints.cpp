#include "picture/svg/SvgParts.h"

#include <algorithm>
#include <array>

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

void SvgDocument::attribute(std::string_view name, Color color)
{
    m_text.append(' ', name, "=\"");
    static constexpr char kDigits[] = "0123456789abcdef";
    const std::array<uint8_t, 3> parts{ color.red, color.green, color.blue };
    const bool isShort =
            std::all_of(parts.begin(), parts.end(), [](uint8_t part) { return part % 17 == 0; });
    if (color == Color{ 255, 0, 0, 255 }) {
        m_text.append("red\"");
        return;
    }
    m_text.append('#');
    for (const uint8_t part : parts) {
        m_text.append(kDigits[part >> 4]);
        if (!isShort)
            m_text.append(kDigits[part & 15]);
    }
    m_text.append('"');
}

void usePaint(SvgDocument &document, const Paint &paint)
{
    if (paint.kind == Paint::Kind::Hatch)
        document.use(Defined::Hatch, paint.resource);
    else if (paint.kind == Paint::Kind::Pattern)
        document.use(Defined::Pattern, paint.resource);
}

static void defineHatch(SvgDocument &document, Index number)
{
    const Hatch &hatch = document.scene().hatches[number];
    document.put("<pattern");
    document.id(Defined::Hatch, number);
    document.put(" patternUnits=\"userSpaceOnUse\"");
    document.attribute("x", hatch.origin.x);
    document.attribute("y", hatch.origin.y);
    document.attribute("width", hatch.tile);
    document.attribute("height", hatch.tile);
    document.put('>');
    if (hatch.ground) {
        document.put("<rect");
        document.attribute("width", hatch.tile);
        document.attribute("height", hatch.tile);
        document.attribute("fill", *hatch.ground);
        document.put("/>");
    }
    document.put("<path fill=\"none\"");
    document.attribute("stroke", hatch.color);
    if (hatch.lineWidth != 1)
        document.attribute("stroke-width", hatch.lineWidth);
    document.put(" d=\"");
    writePathData(document, hatch.lines.verbs(), hatch.lines.points());
    document.put("\"/></pattern>\n");
}

void definePaints(SvgDocument &document)
{
    for (size_t i = 0; i < document.scene().hatches.size(); ++i) {
        if (document.isUsed(Defined::Hatch, Index(i)))
            defineHatch(document, Index(i));
    }
}

static void writePaint(SvgDocument &document, std::string_view name, const Paint &paint)
{
    if (paint.kind == Paint::Kind::Solid) {
        document.attribute(name, paint.color);
        return;
    }
    document.put(' ', name, "=\"");
    document.reference(paint.kind == Paint::Kind::Hatch ? Defined::Hatch : Defined::Pattern,
                       paint.resource);
    document.put('"');
}

void writeFill(SvgDocument &document, Index fill)
{
    if (fill == kNone)
        document.attribute("fill", "none");
    else if (document.scene().paints[fill] != Paint())
        writePaint(document, "fill", document.scene().paints[fill]);
}

void writeStroke(SvgDocument &document, const Stroke &stroke)
{
    writePaint(document, "stroke", stroke.paint);
    if (stroke.width != 1)
        document.attribute("stroke-width", stroke.width);
    if (stroke.cap != Cap::Butt)
        document.attribute("stroke-linecap", stroke.cap == Cap::Round ? "round" : "square");
    if (stroke.join != Join::Miter)
        document.attribute("stroke-linejoin", stroke.join == Join::Round ? "round" : "bevel");
    else if (stroke.miterLimit != 4)
        document.attribute("stroke-miterlimit", stroke.miterLimit);
    if (stroke.dashes.empty())
        return;
    std::string_view before = " stroke-dasharray=\"";
    for (const double dash : stroke.dashes) {
        document.put(before);
        document.number(dash);
        before = " ";
    }
    document.put('"');
    if (stroke.dashOffset != 0)
        document.attribute("stroke-dashoffset", stroke.dashOffset);
}

} // namespace svgtool::picture
