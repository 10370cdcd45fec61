#pragma once

#include "core/records/EmfRecords.h"

#include <QtGlobal>

namespace svgtool {

/// Projects a radial point onto the ellipse inscribed in a rectangle: where the ray from the
/// rectangle's centre through (@p x, @p y) meets the ellipse. All in whole output units.
///
/// A point straight above or below the centre, or equal to it, has no slope and gives coordinates
/// that mean nothing; callers deal with such points themselves.
/// @param[out] result  the point on the ellipse
/// @return true
bool GetPointOnEllipse(qint32 left, qint32 top, qint32 right, qint32 bottom, qint32 x, qint32 y,
                       POINTL &result);

/// Whether the arc from the first point to the second is to be drawn with SVG's large-arc flag.
///
/// Compares the angles of the two points about the centre; points on the vertical through the
/// centre count as above it.
bool IsBigArc(qint32 x1, qint32 y1, qint32 x2, qint32 y2, qint32 centerX, qint32 centerY);

} // namespace svgtool
