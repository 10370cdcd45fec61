#pragma once

#include "picture/svg/SvgDocument.h"

#include <span>

namespace svgtool::picture {

// The parts of the writer, each in a file of its own.

// SvgWriter.cpp
/// Writes the style attribute, if there is anything for it: what SVG 1.1 has no attribute for.
/// @param properties  of CSS, without the blend
void writeStyle(SvgDocument &document, Blend blend, std::string_view properties);

// SvgPathData.cpp
void writePathData(SvgDocument &document, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points);

// SvgShapes.cpp
/// Elements up to the attributes that all kinds share.
void writePath(SvgDocument &document, const Node &node);
void writeRect(SvgDocument &document, const Rect &rect);
void writeEllipse(SvgDocument &document, const Ellipse &ellipse);

// SvgText.cpp
void writeText(SvgDocument &document, const Text &text);
void writeTextEnd(SvgDocument &document, const Text &text);

// SvgPaints.cpp
/// Notes what a paint needs in <defs>.
void usePaint(SvgDocument &document, const Paint &paint);
/// Writes the definitions of all paints that are used.
void definePaints(SvgDocument &document);
void writeFill(SvgDocument &document, Index fill);
void writeStroke(SvgDocument &document, const Stroke &stroke);

// SvgImages.cpp
/// Notes which images are shown more than once, and so are defined.
void useImages(SvgDocument &document);
/// Writes definitions of images and of patterns made of them.
void defineImages(SvgDocument &document);
void writeImage(SvgDocument &document, const Node &node);
/// Whether the document has to know links.
bool needsLinks(const Scene &scene);

} // namespace svgtool::picture
