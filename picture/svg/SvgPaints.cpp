#include "picture/svg/SvgParts.h"

#include <algorithm>
#include <array>

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

// Names that are shorter than the digits of their colours.
static constexpr struct
{
    Color color;
    std::string_view name;
} kNames[] = {
    { { 0x80, 0x00, 0x00 }, "maroon" }, { { 0xA5, 0x2A, 0x2A }, "brown" },
    { { 0xFF, 0x00, 0x00 }, "red" },    { { 0xFF, 0x63, 0x47 }, "tomato" },
    { { 0xFA, 0x80, 0x72 }, "salmon" }, { { 0xA0, 0x52, 0x2D }, "sienna" },
    { { 0xFF, 0x7F, 0x50 }, "coral" },  { { 0xCD, 0x85, 0x3F }, "peru" },
    { { 0xFA, 0xF0, 0xE6 }, "linen" },  { { 0xFF, 0xE4, 0xC4 }, "bisque" },
    { { 0xFF, 0xA5, 0x00 }, "orange" }, { { 0xD2, 0xB4, 0x8C }, "tan" },
    { { 0xF5, 0xDE, 0xB3 }, "wheat" },  { { 0xFF, 0xD7, 0x00 }, "gold" },
    { { 0xF0, 0xE6, 0x8C }, "khaki" },  { { 0xFF, 0xFF, 0xF0 }, "ivory" },
    { { 0xF5, 0xF5, 0xDC }, "beige" },  { { 0x80, 0x80, 0x00 }, "olive" },
    { { 0x00, 0x80, 0x00 }, "green" },  { { 0x00, 0x80, 0x80 }, "teal" },
    { { 0xF0, 0xFF, 0xFF }, "azure" },  { { 0x00, 0x00, 0x80 }, "navy" },
    { { 0x4B, 0x00, 0x82 }, "indigo" }, { { 0xEE, 0x82, 0xEE }, "violet" },
    { { 0x80, 0x00, 0x80 }, "purple" }, { { 0xDD, 0xA0, 0xDD }, "plum" },
    { { 0xDA, 0x70, 0xD6 }, "orchid" }, { { 0xFF, 0xC0, 0xCB }, "pink" },
    { { 0xFF, 0xFA, 0xFA }, "snow" },   { { 0x80, 0x80, 0x80 }, "gray" },
    { { 0xC0, 0xC0, 0xC0 }, "silver" },
};

void SvgDocument::attribute(std::string_view name, Color color)
{
    color.alpha = 255;
    const auto *const named =
            std::ranges::find(kNames, color, [](const auto &row) { return row.color; });
    if (named != std::end(kNames)) {
        attribute(name, named->name);
        return;
    }
    static constexpr char kDigits[] = "0123456789abcdef";
    const std::array<uint8_t, 3> parts{ color.red, color.green, color.blue };
    const bool isShort =
            std::all_of(parts.begin(), parts.end(), [](uint8_t part) { return part % 17 == 0; });
    m_text.append(' ', name, "=\"#");
    for (const uint8_t part : parts) {
        m_text.append(kDigits[part >> 4]);
        if (!isShort)
            m_text.append(kDigits[part & 15]);
    }
    m_text.append('"');
}

// Colours of SVG 1.1 have no alpha.
static void writeOpacity(SvgDocument &document, std::string_view name, uint8_t alpha)
{
    if (alpha == 255)
        return;
    constexpr Numbers kFine(3); // an alpha in bytes comes back from it
    document.put(' ', name, "-opacity=\"");
    kFine.append(document.text(), alpha / 255.0);
    document.put('"');
}

void usePaint(SvgDocument &document, const Paint &paint)
{
    if (paint.kind == Paint::Kind::Hatch)
        document.use(Defined::Hatch, paint.resource);
    else if (paint.kind == Paint::Kind::Pattern)
        usePattern(document, paint.resource);
    else if (paint.kind == Paint::Kind::Gradient)
        document.use(Defined::Gradient, paint.resource);
}

void beginPattern(SvgDocument &document, Defined kind, Index number, const RectD &tile,
                  const Affine &transform)
{
    document.put("<pattern");
    document.id(kind, number);
    document.put(" patternUnits=\"userSpaceOnUse\"");
    writeBox(document, tile);
    document.transformAll(transform, "patternTransform");
    document.put('>');
}

void defineHatch(SvgDocument &document, Index number)
{
    const Hatch &hatch = document.scene().hatches[number];
    const RectD tile{ 0, 0, hatch.tile, hatch.tile };
    const PointD at = hatch.origin;
    beginPattern(document, Defined::Hatch, number,
                 { at.x, at.y, at.x + hatch.tile, at.y + hatch.tile }, hatch.transform);
    if (hatch.ground) {
        document.put("<rect");
        writeBox(document, tile);
        document.attribute("fill", *hatch.ground);
        writeOpacity(document, "fill", hatch.ground->alpha);
        document.put("/>");
    }
    const bool isArea = hatch.lineWidth == 0;
    document.put(isArea ? "<path" : "<path fill=\"none\"");
    document.attribute(isArea ? "fill" : "stroke", hatch.color);
    writeOpacity(document, isArea ? "fill" : "stroke", hatch.color.alpha);
    if (!isArea && hatch.lineWidth != 1)
        document.attribute("stroke-width", hatch.lineWidth);
    document.put(" d=\"");
    writePathData(document, hatch.lines.verbs(), hatch.lines.points());
    document.put("\"/></pattern>\n");
}

// A circle that stays one is written where it lies.
static void writeCircle(SvgDocument &document, const Gradient &gradient)
{
    const Affine &map = gradient.transform;
    const bool isPlain = map.a == map.d && map.b == 0 && map.c == 0 && map.a > 0;
    const PointD focus = isPlain ? map.map(gradient.from) : gradient.from;
    const auto number = [&](std::string_view name, double value) {
        document.put(' ', name, "=\"");
        if (isPlain)
            document.number(value);
        else
            document.exact(value);
        document.put('"');
    };
    number("cx", isPlain ? map.e : 0);
    number("cy", isPlain ? map.f : 0);
    number("r", isPlain ? map.a : 1);
    if (gradient.from != PointD{}) {
        number("fx", focus.x);
        number("fy", focus.y);
    }
    if (!isPlain)
        document.transformAll(map, "gradientTransform");
}

void defineGradient(SvgDocument &document, Index number)
{
    const Gradient &gradient = document.scene().gradients[number];
    const std::string_view name = gradient.isRadial ? "radialGradient" : "linearGradient";
    document.put('<', name);
    document.id(Defined::Gradient, number);
    document.put(" gradientUnits=\"userSpaceOnUse\"");
    if (gradient.isRadial) {
        writeCircle(document, gradient);
    } else {
        if (gradient.from.x != 0)
            document.attribute("x1", gradient.from.x);
        if (gradient.from.y != 0)
            document.attribute("y1", gradient.from.y);
        document.attribute("x2", gradient.to.x); // which is 100 % where it is not told
        if (gradient.to.y != 0)
            document.attribute("y2", gradient.to.y);
    }
    if (gradient.spread != Gradient::Spread::Pad)
        document.attribute("spreadMethod",
                           gradient.spread == Gradient::Spread::Repeat ? "repeat" : "reflect");
    document.put('>');
    for (const Gradient::Stop &stop : gradient.stops) {
        constexpr Numbers kFine(4);
        document.put("<stop offset=\"");
        kFine.append(document.text(), stop.offset);
        document.put('"');
        document.attribute("stop-color", stop.color);
        writeOpacity(document, "stop", stop.color.alpha);
        document.put("/>");
    }
    document.put("</", name, ">\n");
}

static void writeReference(SvgDocument &document, std::string_view name, const Paint &paint)
{
    document.put(' ', name, "=\"");
    document.reference(paint.kind == Paint::Kind::Hatch             ? Defined::Hatch
                               : paint.kind == Paint::Kind::Pattern ? Defined::Pattern
                                                                    : Defined::Gradient,
                       paint.resource);
    document.put('"');
}

void writeFill(SvgDocument &document, Index fill)
{
    if (fill == kNone) {
        document.attribute("fill", "none");
        return;
    }
    const Paint &paint = document.scene().paints[fill];
    if (paint.kind != Paint::Kind::Solid) {
        writeReference(document, "fill", paint);
        return;
    }
    if (paint.color != Color{ 0, 0, 0, paint.color.alpha })
        document.attribute("fill", paint.color);
    writeOpacity(document, "fill", paint.color.alpha);
}

void writeStrokePaint(SvgDocument &document, const Paint &paint)
{
    if (paint.kind != Paint::Kind::Solid) {
        writeReference(document, "stroke", paint);
        return;
    }
    document.attribute("stroke", paint.color);
    writeOpacity(document, "stroke", paint.color.alpha);
}

// Lengths of strokes may be in units of a transform, so that those of the picture say nothing of
// how fine they are to be.
static void writeStrokeLength(SvgDocument &document, double length)
{
    constexpr double kThousand = 1000;
    Numbers::forPixel(std::min(document.unitsPerPixel(), std::max(length, 1 / kThousand)))
            .append(document.text(), length);
}

void writeStrokeWidth(SvgDocument &document, double width)
{
    if (width == 1)
        return;
    document.put(" stroke-width=\"");
    writeStrokeLength(document, width);
    document.put('"');
}

void writeStrokeCap(SvgDocument &document, Cap cap)
{
    if (cap != Cap::Butt)
        document.attribute("stroke-linecap", cap == Cap::Round ? "round" : "square");
}

void writeStrokeJoin(SvgDocument &document, Join join)
{
    if (join != Join::Miter)
        document.attribute("stroke-linejoin", join == Join::Round ? "round" : "bevel");
}

void writeMiterLimit(SvgDocument &document, double limit)
{
    constexpr Numbers kFine(3);
    if (limit == 4)
        return;
    document.put(" stroke-miterlimit=\"");
    kFine.append(document.text(), std::max(limit, 1.0));
    document.put('"');
}

void writeDashes(SvgDocument &document, const Stroke &stroke)
{
    if (stroke.dashes.empty())
        return;
    std::string_view before = " stroke-dasharray=\"";
    for (const double dash : stroke.dashes) {
        document.put(before);
        writeStrokeLength(document, dash);
        before = " ";
    }
    document.put('"');
    if (stroke.dashOffset != 0)
        document.attribute("stroke-dashoffset", stroke.dashOffset);
}

} // namespace svgtool::picture
