#pragma once

#include "picture/svg/SvgDocument.h"

#include <span>

namespace svgtool::picture {

// The parts of the writer, each in a file of its own.

// SvgShapes.cpp
void writePathData(SvgDocument &document, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points);
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

} // namespace svgtool::picture
