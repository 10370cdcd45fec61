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

static constexpr Played kNoRegion = notDone("there is no such region");
static constexpr uint32_t kReplace = 5; // RGN_COPY

// A region that is selected is the clip.
Played selectObject(DeviceContext &dc, ByteView record)
{
    const uint32_t handle = Fields(record, kBody).word() + 1u;
    const Region *const region = dc.region(handle);
    return region != nullptr ? dc.selectClipRegion(*region, kReplace) : dc.selectObject(handle);
}

Played selectClipRegion(DeviceContext &dc, ByteView record)
{
    const Region *const region = dc.region(Fields(record, kBody).word() + 1u);
    return region != nullptr ? dc.selectClipRegion(*region, kReplace) : dc.resetClip();
}

// The descriptions have the region first, some writers the order of other records; which of the two
// a record has is told by the object that is a region.
Played fillRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t first = fields.word() + 1u, second = fields.word() + 1u;
    if (const Region *const region = dc.region(first))
        return dc.fillRegion(region->rects(), second);
    const Region *const region = dc.region(second);
    return region != nullptr ? dc.fillRegion(region->rects(), first) : kNoRegion;
}

Played frameRegion(DeviceContext &dc, ByteView record)
{
    constexpr int64_t kEdgeBytes = 4;
    Fields fields(record, kBody);
    const uint32_t first = fields.word() + 1u, second = fields.word() + 1u;
    if (const Region *const region = dc.region(first))
        return dc.frameRegion(region->rects(), second, takePoint(fields));
    Fields reversed(record, kBody);
    const PointD edge = takePoint(reversed);
    Fields objects(record, kBody + kEdgeBytes);
    const uint32_t brush = objects.word() + 1u;
    const Region *const region = dc.region(objects.word() + 1u);
    return region != nullptr ? dc.frameRegion(region->rects(), brush, edge) : kNoRegion;
}

Played invertRegion(DeviceContext &dc, ByteView record)
{
    const Region *const region = dc.region(Fields(record, kBody).word() + 1u);
    return region != nullptr ? dc.invertRegion(region->rects()) : kNoRegion;
}

Played paintRegion(DeviceContext &dc, ByteView record)
{
    const Region *const region = dc.region(Fields(record, kBody).word() + 1u);
    return region != nullptr ? dc.paintRegion(region->rects()) : kNoRegion;
}

} // namespace svgtool::picture::wmf
