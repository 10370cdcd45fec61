#include "picture/play/EmfCalls.h"

namespace svgtool::picture::emf {

static std::vector<PointD> takePoints(ByteView record, Fields &fields, int64_t count, Width width)
{
    return width == Width::Short ? picture::takePoints<int16_t>(record, fields, count)
                                 : picture::takePoints<int32_t>(record, fields, count);
}

Played playPoints(DeviceContext &dc, ByteView record, Width width, PointsCall call)
{
    Fields fields(record, kBody + kBounds);
    const int64_t count = fields.dword();
    const auto points = takePoints(record, fields, count, width);
    return ofPoints(points, count, (dc.*call)(points));
}

Played playFigures(DeviceContext &dc, ByteView record, Width width, FiguresCall call)
{
    Fields fields(record, kBody + kBounds);
    const int64_t figures = fields.dword(), count = fields.dword();
    if (!slice(record, fields.offset(), figures * 4))
        return notDone("it names more figures than it has");
    std::vector<uint32_t> counts;
    counts.reserve(size_t(figures));
    int64_t sum = 0;
    for (int64_t i = 0; i < figures; ++i) {
        counts.push_back(fields.dword());
        sum += counts.back();
    }
    const auto points = takePoints(record, fields, count, width);
    trimFigures(counts, points.size());
    return ofPoints(points, sum, (dc.*call)(points, counts));
}

Played playPolyDraw(DeviceContext &dc, ByteView record, Width width)
{
    Fields fields(record, kBody + kBounds);
    const int64_t count = fields.dword();
    const auto points = takePoints(record, fields, count, width);
    if (!slice(record, fields.offset(), count))
        return kTooFewPoints;
    std::vector<uint8_t> types;
    types.reserve(size_t(count));
    for (int64_t i = 0; i < count; ++i)
        types.push_back(fields.byte());
    return dc.polyDraw(points, types);
}

Played setPixel(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointD point = takePoint(fields);
    return dc.setPixel(point, takeColor(dc, fields));
}

Played roundRectangle(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const RectD box = takeBox(fields);
    return dc.roundRectangle(box, takePoint(fields));
}

Played angleArc(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointD center = takePoint(fields);
    const double radius = fields.dword();
    const double start = double(fields.real());
    return dc.angleArc(center, radius, start, double(fields.real()));
}

Played floodFill(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointD from = takePoint(fields);
    const Color color = takeColor(dc, fields);
    return dc.floodFill(from, color, fields.dword());
}

static constexpr Played kNoRegion = notDone("its region makes no sense");

Played fillRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const uint32_t bytes = fields.dword(), brush = fields.dword();
    const auto rects = readRegion(record, fields.offset(), bytes);
    return rects ? dc.fillRegion(*rects, brush) : kNoRegion;
}

Played frameRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const uint32_t bytes = fields.dword(), brush = fields.dword();
    const PointD edge = takePoint(fields);
    const auto rects = readRegion(record, fields.offset(), bytes);
    return rects ? dc.frameRegion(*rects, brush, edge) : kNoRegion;
}

Played paintRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const uint32_t bytes = fields.dword();
    const auto rects = readRegion(record, fields.offset(), bytes);
    return rects ? dc.paintRegion(*rects) : kNoRegion;
}

Played invertRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + kBounds);
    const uint32_t bytes = fields.dword();
    const auto rects = readRegion(record, fields.offset(), bytes);
    return rects ? dc.invertRegion(*rects) : kNoRegion;
}

} // namespace svgtool::picture::emf
