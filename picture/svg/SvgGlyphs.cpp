#include "picture/svg/SvgParts.h"

#include <cmath>
#include <vector>

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

// About as many bytes as the data of a path take.
static size_t lengthOf(const Path &path)
{
    size_t length = 0;
    for (const Path::Verb verb : path.verbs())
        length += verb == Path::Verb::Curve ? 14 : verb == Path::Verb::Close ? 1 : 6;
    return length;
}

// Defined is what is shorter to name each time than to draw.
void useGlyphs(SvgDocument &document)
{
    constexpr size_t kDefinition = 30, kUse = 50; // bytes, without the data
    const Scene &scene = document.scene();
    std::vector<size_t> counts(scene.glyphs.size());
    for (const Node &node : scene.nodes) {
        if (node.kind != Node::Kind::Text)
            continue;
        for (const Index glyph : scene.texts[node.geometry].glyphs)
            ++counts[glyph];
    }
    for (Index glyph = 0; glyph < counts.size(); ++glyph) {
        const size_t length = lengthOf(scene.glyphs[glyph]), count = counts[glyph];
        if (kDefinition + length + kUse * count < length * count)
            document.use(Defined::Glyph, glyph);
    }
}

// The letters' own units are as fine as their outlines.
void defineGlyph(SvgDocument &document, Index number)
{
    constexpr Numbers kWhole(0);
    const Path &outline = document.scene().glyphs[number];
    document.put("<path");
    document.id(Defined::Glyph, number);
    document.put(" d=\"");
    writePathData(document, kWhole, outline.verbs(), outline.points());
    document.put("\"/>\n");
}

void writeGlyphs(SvgDocument &document, const Node &node, std::string_view attributes)
{
    const Scene &scene = document.scene();
    const Text &text = scene.texts[node.geometry];
    const Affine map = node.transform != kNone ? scene.transforms[node.transform] : Affine();
    const Numbers grid =
            Numbers::forPixel(document.unitsPerPixel() / std::fmax(map.scaleX(), map.scaleY()));
    std::vector<size_t> used;
    Path drawn;
    for (size_t i = 0; i < text.pieces.size(); ++i) {
        if (document.isUsed(Defined::Glyph, text.glyphs[i])) {
            used.push_back(i);
            continue;
        }
        Path outline = scene.glyphs[text.glyphs[i]];
        const PointD place = placeOf(text, text.pieces[i]);
        outline.transform(Affine::translation(place.x, place.y));
        drawn.append(outline);
    }
    const bool isGroup = !attributes.empty() && used.size() + (drawn.isEmpty() ? 0 : 1) > 1;
    const std::string_view each = isGroup ? std::string_view() : attributes;
    if (isGroup)
        document.put("<g", attributes, ">\n");
    if (!drawn.isEmpty()) {
        document.put("<path d=\"");
        writePathData(document, grid, drawn.verbs(), drawn.points());
        document.put('"', each, "/>\n");
    }
    for (const size_t i : used) {
        const PointD place = placeOf(text, text.pieces[i]);
        document.put("<use x=\"");
        grid.append(document.text(), place.x);
        document.put("\" y=\"");
        grid.append(document.text(), place.y);
        document.put('"', each);
        document.link(Defined::Glyph, text.glyphs[i]);
        document.put("/>\n");
    }
    if (isGroup)
        document.put("</g>\n");
}

} // namespace svgtool::picture
