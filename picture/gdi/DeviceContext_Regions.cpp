#include "picture/gdi/DeviceContext.h"

#include "core/raster/Mixture.h"
#include "picture/scene/Floods.h"
#include "picture/scene/Passes.h"

#include <algorithm>
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
    if (rects.size() == 1 && m_state.toDevice.keepsRectangles()) {
        const Rect box{ mapBounds(toPicture(), boxOf(rects[0])), 0, 0 };
        return box.box.isEmpty()
                ? kDone
                : addMixed(
                        node, [&](const Node &part) { m_builder.add(part, box); }, operation);
    }
    if (std::ranges::all_of(rects, &RectI::isEmpty))
        return kDone;
    const Affine place = toPicture();
    return addMixed(
            node, [&](const Node &part) { m_builder.add(part, rects, place); }, operation);
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

// The frame is what a region loses when it is moved by the edge to each of the four sides.
// @return nothing when there would be too many rectangles
static std::optional<Region> frameOf(const Region &region, PointD edge)
{
    const int32_t dx = truncateToInt32(std::abs(edge.x)), dy = truncateToInt32(std::abs(edge.y));
    const RectI all = region.bounds();
    const RectI around{ wrapSub(all.left, 1), wrapSub(all.top, 1), wrapAdd(all.right, 1),
                        wrapAdd(all.bottom, 1) };
    const auto outside = Region::combined(Region(around), region, Region::Mode::Difference);
    if (!outside)
        return std::nullopt;
    std::vector<RectI> grown;
    grown.reserve(2 * outside->rects().size());
    for (const RectI &rect : outside->rects()) {
        grown.push_back({ wrapSub(rect.left, dx), rect.top, wrapAdd(rect.right, dx), rect.bottom });
        grown.push_back({ rect.left, wrapSub(rect.top, dy), rect.right, wrapAdd(rect.bottom, dy) });
    }
    const auto near = Region::of(std::move(grown));
    return near ? Region::combined(region, *near, Region::Mode::And) : std::nullopt;
}

Played DeviceContext::frameRegion(std::span<const RectI> rects, uint32_t handle, PointD edge)
{
    const auto region = Region::of({ rects.begin(), rects.end() });
    if (!region)
        return kTooManyRects;
    if (region->isEmpty())
        return kDone;
    const auto frame = frameOf(*region, edge);
    return frame ? fillRegion(frame->rects(), handle) : kTooManyRects;
}

// A figure is filled by giving it another filling, so that its line stays smooth and on top.
Played DeviceContext::floodFill(PointD from, Color color, uint32_t mode)
{
    constexpr uint32_t kToColor = 0, kOfColor = 1;
    if (mode > kOfColor)
        return notDone("its mode is not known");
    if (m_state.brush.kind == Brush::Kind::Null || isHidden())
        return kDone;
    Scene &scene = m_builder.scene();
    if (m_left.floodSteps > 0) { // lines that go round an area are a figure
        joinLines(scene);
        m_left.floodSteps -= int64_t(scene.nodes.size() + scene.verbs.size());
        m_grounds.forget(0);
        m_transferred = {};
        m_inverted.clear();
    }
    const double half = m_device.unitsPerPixel / 2;
    const PointD at = toPicture().map(from);
    const Flood flood{ { at.x + half, at.y + half }, color, mode == kToColor };
    const auto flooded = picture::flooded(scene, flood, m_left.floodSteps);
    if (!flooded)
        return notDone("it begins in no figure of one colour");
    if (flooded->node == kNone)
        return kDone;
    Node &figure = scene.nodes[flooded->node];
    const Paint paint = brushPaint(m_state.brush);
    const bool isWhole = figure.fill == kNone || paint.kind == Paint::Kind::Solid
            || m_state.brush.kind == Brush::Kind::Pattern || m_state.isOpaque;
    if (figure.clip != visibleClip() || !isWhole)
        return notDone("it fills only a part of its figure");
    figure.fill = m_builder.paint(paint);
    return flooded->isSure ? kDone : approximated("it leaves what was painted in its figure");
}

} // namespace svgtool::picture
