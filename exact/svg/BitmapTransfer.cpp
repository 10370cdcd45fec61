#include "exact/svg/BitmapTransfer.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/Numeric.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\BitmapTransfer.cpp";

namespace {

    // One axis of a transfer: pixels [source, source + extent) fill [from, to).
    struct Axis
    {
        qint64 source, extent;
        qint64 from, to;
        bool isMirrored = false;

        // Makes both directions ascend.
        void straighten()
        {
            if (extent < 0) {
                source += extent;
                extent = -extent;
                isMirrored = !isMirrored;
            }
            if (to < from) {
                std::swap(from, to);
                isMirrored = !isMirrored;
            }
        }

        // Cuts off what lies outside [0, size). False when nothing is left.
        bool clip(qint64 size)
        {
            const qint64 cutBefore = std::max<qint64>(0, -source);
            const qint64 cutBehind = std::max<qint64>(0, source + extent - size);
            if (cutBefore + cutBehind >= extent)
                return false;
            const double unitsPerPixel = double(to - from) / double(extent);
            const auto units = [unitsPerPixel](qint64 pixels) {
                return static_cast<qint64>(std::floor(double(pixels) * unitsPerPixel + 0.5));
            };
            from += units(isMirrored ? cutBehind : cutBefore);
            to -= units(isMirrored ? cutBefore : cutBehind);
            source += cutBefore;
            extent -= cutBefore + cutBehind;
            return from < to;
        }
    };

} // namespace

std::optional<BitmapPlacement> placeBitmap(const BitmapTransfer &transfer)
{
    SVGTOOL_TRACE("placeBitmap");
    const QSize size = transfer.bitmap.size;
    const RECTL &corners = transfer.corners;
    Axis x{ transfer.sourceX, transfer.sourceWidth, corners.left, corners.right };
    Axis y{ transfer.sourceY, transfer.sourceHeight, corners.top, corners.bottom };
    x.straighten();
    y.straighten();
    if (transfer.countsFromBottom)
        y.source = size.height() - (y.source + y.extent);
    if (!x.clip(size.width()) || !y.clip(size.height()))
        return std::nullopt;
    BitmapPlacement place;
    place.part = QRect(int(x.source), int(y.source), int(x.extent), int(y.extent));
    place.box = { qint32(x.from), qint32(y.from), qint32(x.to), qint32(y.to) };
    place.mirrorsX = x.isMirrored;
    place.mirrorsY = y.isMirrored;
    return place;
}

} // namespace svgtool
