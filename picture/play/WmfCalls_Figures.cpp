#include "picture/play/WmfCalls.h"

#include <algorithm>

namespace svgtool::picture::wmf {

std::optional<RectD> outlined(const DeviceContext &dc, const RectD &box)
{
    // In pixels, whichever way the axes run.
    const Affine &toDevice = dc.state().toDevice;
    const auto toLogical = toDevice.inverse();
    if (!toLogical)
        return std::nullopt;
    RectD pixels = mapBounds(toDevice, box);
    pixels.right -= 1;
    pixels.bottom -= 1;
    if (pixels.right < pixels.left || pixels.bottom < pixels.top)
        return std::nullopt;
    return mapBounds(*toLogical, pixels);
}

Played polyline(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const int64_t count = fields.word();
    const auto points = takePoints<int16_t>(record, fields, count);
    return ofPoints(points, count, dc.polyline(points));
}

Played polygon(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const int64_t count = fields.word();
    const auto points = takePoints<int16_t>(record, fields, count);
    return ofPoints(points, count, dc.polygon(points));
}

Played polyPolygon(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const int64_t polygons = fields.word();
    if (!slice(record, fields.offset(), polygons * 2))
        return notDone("it names more figures than it has");
    std::vector<uint32_t> counts;
    int64_t sum = 0;
    for (int64_t i = 0; i < polygons; ++i) {
        counts.push_back(fields.word());
        sum += counts.back();
    }
    const auto points = takePoints<int16_t>(record, fields, sum);
    trimFigures(counts, points.size());
    return ofPoints(points, sum, dc.polyPolygon(points, counts));
}

Played roundRectangle(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointD corner = takePoint(fields);
    const auto box = outlined(dc, takeBox(fields));
    return box ? dc.roundRectangle(*box, corner) : kDone;
}

Played setPixel(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const Color color = dc.colorOfReference(fields.dword());
    return dc.setPixel(takePoint(fields), color);
}

static Played takeFlood(DeviceContext &dc, Fields &fields, uint16_t mode)
{
    const Color color = dc.colorOfReference(fields.dword());
    return dc.floodFill(takePoint(fields), color, mode);
}

Played floodFill(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return takeFlood(dc, fields, 0);
}

Played extFloodFill(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint16_t mode = fields.word();
    return takeFlood(dc, fields, mode);
}

// A region that is selected is the clip.
Played selectObject(DeviceContext &dc, ByteView record)
{
    const uint32_t handle = Fields(record, kBody).word() + 1u;
    auto region = dc.region(handle);
    return region ? dc.replaceClip(std::move(region)) : dc.selectObject(handle);
}

Played selectClipRegion(DeviceContext &dc, ByteView record)
{
    auto region = dc.region(Fields(record, kBody).word() + 1u);
    return region ? dc.replaceClip(std::move(region)) : dc.resetClip();
}

template<class Draw>
static Played drawRegion(DeviceContext &dc, const std::shared_ptr<const Region> &region, Draw draw)
{
    if (!region)
        return notDone("there is no such region");
    return dc.spendRegion(*region) ? draw(region->rects())
                                   : notDone("large regions are drawn too often");
}

// The descriptions have the region first, some writers the order of other records; which of the two
// a record has is told by the object that is a region.
Played fillRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t first = fields.word() + 1u, second = fields.word() + 1u;
    const auto region = dc.region(first);
    return drawRegion(dc, region ? region : dc.region(second), [&](std::span<const RectI> rects) {
        return dc.fillRegion(rects, region ? second : first);
    });
}

Played frameRegion(DeviceContext &dc, ByteView record)
{
    constexpr int64_t kEdgeBytes = 4;
    Fields fields(record, kBody);
    const uint32_t first = fields.word() + 1u, second = fields.word() + 1u;
    const auto frame = [&dc](uint32_t region, uint32_t brush, PointD edge) {
        return drawRegion(dc, dc.region(region), [&](std::span<const RectI> rects) {
            return dc.frameRegion(rects, brush, edge);
        });
    };
    if (dc.region(first))
        return frame(first, second, takePoint(fields));
    Fields reversed(record, kBody);
    const PointD edge = takePoint(reversed);
    Fields objects(record, kBody + kEdgeBytes);
    const uint32_t brush = objects.word() + 1u;
    return frame(objects.word() + 1u, brush, edge);
}

Played invertRegion(DeviceContext &dc, ByteView record)
{
    return drawRegion(dc, dc.region(Fields(record, kBody).word() + 1u),
                      [&dc](std::span<const RectI> rects) { return dc.invertRegion(rects); });
}

Played paintRegion(DeviceContext &dc, ByteView record)
{
    return drawRegion(dc, dc.region(Fields(record, kBody).word() + 1u),
                      [&dc](std::span<const RectI> rects) { return dc.paintRegion(rects); });
}

} // namespace svgtool::picture::wmf
