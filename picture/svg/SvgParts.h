#pragma once

#include "picture/svg/SvgStyle.h"

#include <span>

namespace svgtool::picture {

// The parts of the writer, each in a file of its own.

// SvgWriter.cpp
/// Writes the style attribute, if there is anything for it: what SVG 1.1 has no attribute for.
/// @param properties  of CSS, without the blend
void writeStyle(SvgDocument &document, Blend blend, std::string_view properties);
/// Notes what a node needs in <defs>, but for images and letters.
void useDefinitions(SvgDocument &document, const Node &node);
void writeDefinition(SvgDocument &document, const SvgDocument::Definition &definition);
/// Writes a node that stands in no group.
void writeAlone(SvgDocument &document, const Node &node, SvgStyles &styles);

// SvgPathData.cpp
void writePathData(SvgDocument &document, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points);
/// The same on a grid of its own.
void writePathData(SvgDocument &document, const Numbers &grid, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points);

// SvgFillRules.cpp
/// Whether a path is filled differently by the two rules, as far as that is easy to see; else true.
bool needsFillRule(std::span<const Path::Verb> verbs, std::span<const PointD> points);

// SvgShapes.cpp
// Elements up to the attributes that groups may say for them.
void writePath(SvgDocument &document, const Node &node);
/// Attributes: the left upper corner where it is not 0,0; the same, and the size.
void writeCorner(SvgDocument &document, const RectD &box);
void writeBox(SvgDocument &document, const RectD &box);
void writeRect(SvgDocument &document, const Rect &rect);
void writeEllipse(SvgDocument &document, const Ellipse &ellipse);

// SvgText.cpp
void writeText(SvgDocument &document, const Text &text);
/// One of the properties of fonts; nothing where it is the default.
void writeFont(SvgDocument &document, const FontStyle &font, Property property);
/// From behind the last attribute.
void writeTextEnd(SvgDocument &document, const Text &text);

// SvgGlyphs.cpp
/// Notes which letters are drawn more than once, and so are defined.
void useGlyphs(SvgDocument &document);
void defineGlyph(SvgDocument &document, Index glyph);
/// @param attributes  of the whole text
void writeGlyphs(SvgDocument &document, const Node &node, std::string_view attributes);

// SvgPaints.cpp
/// Notes what a paint needs in <defs>.
void usePaint(SvgDocument &document, const Paint &paint);
/// Up to the contents of a pattern.
void beginPattern(SvgDocument &document, SvgDocument::Defined kind, Index number, const RectD &tile,
                  const Affine &transform);
void defineHatch(SvgDocument &document, Index hatch);
void defineGradient(SvgDocument &document, Index gradient);

// Single attributes; nothing where they are the default.
void writeFill(SvgDocument &document, Index fill);
void writeStrokePaint(SvgDocument &document, const Paint &paint);
void writeStrokeWidth(SvgDocument &document, double width);
void writeStrokeCap(SvgDocument &document, Cap cap);
void writeStrokeJoin(SvgDocument &document, Join join);
void writeMiterLimit(SvgDocument &document, double limit);
void writeDashes(SvgDocument &document, const Stroke &stroke);

// SvgClips.cpp
void useClip(SvgDocument &document, Index clip);
void defineClip(SvgDocument &document, Index clip);
void writeClipReference(SvgDocument &document, Index clip);

// SvgImages.cpp
/// Notes which images are shown more than once, and so are defined. Images that several patterns or
/// several nodes show are; one of each kind says it twice, since it needs no more.
class ImageUses
{
public:
    explicit ImageUses(SvgDocument &document);
    void addNode(const Node &node);
    /// @param first  of the definitions whose tiles are added
    void addTiles(size_t first);

private:
    void add(std::vector<bool> &seen, Index image);

    SvgDocument &m_document;
    std::vector<bool> m_isSeen, m_isTile; ///< by image
};
void defineImage(SvgDocument &document, Index image);
void usePattern(SvgDocument &document, Index pattern);
void definePattern(SvgDocument &document, Index pattern);
/// Up to the attributes that groups may say, with its transform.
void writeImage(SvgDocument &document, const Node &node);
/// Its properties of CSS.
std::string_view imageStyle(const ImagePlace &place);
/// Whether the document has to know links.
/// @param document  which knows the glyphs that it defines
bool needsLinks(const SvgDocument &document);

} // namespace svgtool::picture
