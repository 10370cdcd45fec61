#pragma once

#include "core/base/Numeric.h"

#include <QRect>

namespace svgtool {

/// The rectangle at @p left, @p top of the given size, its corners in 32-bit wrap-around
/// arithmetic, as numbers from a file need.
inline QRect rectAt(qint32 left, qint32 top, qint32 width, qint32 height)
{
    QRect rect;
    rect.setCoords(left, top, wrapSub(wrapAdd(left, width), 1), wrapSub(wrapAdd(top, height), 1));
    return rect;
}

} // namespace svgtool
