#include "core/raster/BitmapTransfer.h"

#include "core/base/Numeric.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace svgtool {

namespace {

    // One axis of a transfer: pixels [source, source + extent) fill [from, to).
    struct Axis
    {
        int64_t source, extent;
        int64_t from, to;
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
        bool clip(int64_t size)
        {
            const int64_t cutBefore = std::max<int64_t>(0, -source);
            const int64_t cutBehind = std::max<int64_t>(0, source + extent - size);
            if (cutBefore + cutBehind >= extent)
                return false;
            const double unitsPerPixel = double(to - from) / double(extent);
            const auto units = [unitsPerPixel](int64_t pixels) {
                return static_cast<int64_t>(std::floor(double(pixels) * unitsPerPixel + 0.5));
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
    const IntSize size = transfer.bitmap.size;
    const RECTL &corners = transfer.corners;
    Axis x{ transfer.sourceX, transfer.sourceWidth, corners.left, corners.right };
    Axis y{ transfer.sourceY, transfer.sourceHeight, corners.top, corners.bottom };
    x.straighten();
    y.straighten();
    if (transfer.countsFromBottom)
        y.source = size.height - (y.source + y.extent);
    if (!x.clip(size.width) || !y.clip(size.height))
        return std::nullopt;
    BitmapPlacement place;
    place.part = { int32_t(x.source), int32_t(y.source), int32_t(x.extent), int32_t(y.extent) };
    place.box = { int32_t(x.from), int32_t(y.from), int32_t(x.to), int32_t(y.to) };
    place.mirrorsX = x.isMirrored;
    place.mirrorsY = y.isMirrored;
    return place;
}

} // namespace svgtool
