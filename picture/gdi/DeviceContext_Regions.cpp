#include "picture/gdi/DeviceContext.h"

#include "core/raster/Mixture.h"

#include <cmath>

namespace svgtool::picture {

static constexpr Played kTooManyRects = notDone("its region has too many rectangles");

// Paints the rectangles of a region, which are logical, through an operation.
Played DeviceContext::paintRects(std::span<const RectI> rects, const Brush &brush,
                                 RasterOperation operation)
{
    if (brush.kind == Brush::Kind::Null || isHidden())
        return kDone;
    Node node = newNode();
    node.fill = m_builder.paint(brushPaint(brush));
    node.isEvenOdd = false;
    const auto boxOf = [](const RectI &rect) {
        return RectD{ double(rect.left), double(rect.top), double(rect.right),
                      double(rect.bottom) };
    };
    if (rects.size() == 1 && m_state.toDevice.keepsRectangles()) {
        const Rect box{ mapBounds(toPicture(), boxOf(rects[0])), 0, 0 };
        return box.box.isEmpty()
                ? kDone
                : addMixed(
                        node, [&](const Node &part) { m_builder.add(part, box); }, operation);
    }
    Path path;
    for (const RectI &rect : rects) {
        if (!rect.isEmpty())
            path.addRect(boxOf(rect));
    }
    const Affine place = toPicture();
    return path.isEmpty()
            ? kDone
            : addMixed(
                    node, [&](const Node &part) { m_builder.add(part, path, place); }, operation);
}

Played DeviceContext::fillRegion(std::span<const RectI> rects, uint32_t handle)
{
    const auto *brush = object(handle) != nullptr ? std::get_if<Brush>(object(handle)) : nullptr;
    return brush != nullptr ? paintRects(rects, *brush, operationOfRop2(m_state.rop2))
                            : notDone("its brush is not there");
}

Played DeviceContext::paintRegion(std::span<const RectI> rects)
{
    return paintRects(rects, m_state.brush, operationOfRop2(m_state.rop2));
}

Played DeviceContext::invertRegion(std::span<const RectI> rects)
{
    return paintRects(rects, Brush(), kInversion);
}

Played DeviceContext::frameRegion(std::span<const RectI> rects, uint32_t handle, PointD edge)
{
    // The frame is what a region loses when it is moved by the edge to each of the four sides.
    const auto region = Region::of(rects);
    if (!region)
        return kTooManyRects;
    if (region->isEmpty())
        return kDone;
    const int32_t dx = truncateToInt32(std::abs(edge.x)), dy = truncateToInt32(std::abs(edge.y));
    const RectI all = region->bounds();
    const RectI around{ wrapSub(all.left, 1), wrapSub(all.top, 1), wrapAdd(all.right, 1),
                        wrapAdd(all.bottom, 1) };
    const auto outside = Region::combined(Region(around), *region, Region::Mode::Difference);
    if (!outside)
        return kTooManyRects;
    std::vector<RectI> grown;
    for (const RectI &rect : outside->rects()) {
        grown.push_back({ wrapSub(rect.left, dx), rect.top, wrapAdd(rect.right, dx), rect.bottom });
        grown.push_back({ rect.left, wrapSub(rect.top, dy), rect.right, wrapAdd(rect.bottom, dy) });
    }
    const auto near = Region::of(grown);
    const auto frame = near ? Region::combined(*region, *near, Region::Mode::And) : std::nullopt;
    return frame ? fillRegion(frame->rects(), handle) : kTooManyRects;
}

} // namespace svgtool::picture
