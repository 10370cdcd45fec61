#include "exact/geometry/GeometricHelpers.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"

#include <cmath>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\GeometricHelpers.cpp";

bool GetPointOnEllipse(qint32 left, qint32 top, qint32 right, qint32 bottom, qint32 x, qint32 y,
                       POINTL &result)
{
    SVGTOOL_TRACE("GetPointOnEllipse");
    const qint32 a = wrapSub(right, left) / 2;
    const qint32 b = wrapSub(bottom, top) / 2;
    const qint32 centerX = wrapAdd(left, a);
    const qint32 centerY = wrapAdd(top, b);
    const qint32 dx = wrapSub(x, centerX);
    const qint32 dy = wrapSub(y, centerY);

    // Each step is in single precision, on which the last unit of the result depends.
    const float slope = static_cast<float>(dy) / static_cast<float>(dx);
    const float aa = static_cast<float>(wrapMul(a, a));
    const float bb = static_cast<float>(wrapMul(b, b));
    const float aam = aa * slope;
    const float aamm = aam * slope;
    const float sum = aamm + bb;
    const float root = std::sqrt(sum);

    const double ab = wrapMul(a, b);
    // Without a width every point is the centre, also where the height is 0 too.
    qint32 offsetX = a == 0 && dx != 0 ? 0 : truncateToInt32(ab / static_cast<double>(root));
    if (dx < 0)
        offsetX = wrapSub(0, offsetX);
    const qint32 offsetY = truncateToInt32(offsetX * static_cast<double>(slope));
    result = { wrapAdd(centerX, offsetX), wrapAdd(centerY, offsetY) };
    return true;
}

// The angle of a point about the centre, from 0 to 2 pi (not included).
static double angleAbout(qint32 x, qint32 y, qint32 centerX, qint32 centerY)
{
    const double pi = 2.0 * std::asin(1.0);
    const double dx = wrapSub(x, centerX);
    const double dy = wrapSub(y, centerY);
    double angle = std::atan(dy / dx);
    if (angle < 0)
        angle += pi;
    if (x < centerX)
        angle += pi;
    return angle;
}

bool IsBigArc(qint32 x1, qint32 y1, qint32 x2, qint32 y2, qint32 centerX, qint32 centerY)
{
    SVGTOOL_TRACE("IsBigArc");
    return angleAbout(x1, y1, centerX, centerY) - angleAbout(x2, y2, centerX, centerY) > 0;
}

} // namespace svgtool
