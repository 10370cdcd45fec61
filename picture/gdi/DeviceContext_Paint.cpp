#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool::picture {

// Raster operations on two operands, [MS-EMF] 2.1.26, whose result does not depend on the ground.
static constexpr uint32_t kRop2Black = 1, kRop2Nop = 11, kRop2CopyPen = 13, kRop2White = 16;

static std::optional<Color> colorOfRop2(uint32_t mode)
{
    if (mode == kRop2Black)
        return Color{ 0, 0, 0, 255 };
    if (mode == kRop2White)
        return Color{ 255, 255, 255, 255 };
    return std::nullopt;
}

Node DeviceContext::newNode()
{
    Node node;
    node.isEvenOdd = !m_state.isWinding;
    node.clip = visibleClip();
    node.record = m_record;
    return node;
}

// HatchStyle, [MS-EMF] 2.1.17.
static constexpr uint8_t kHorizontal = 0, kVertical = 1, kForward = 2, kBackward = 3, kCross = 4,
                         kDiagonalCross = 5;

// The lines of a hatch in a tile of 8 pixels, as GDI's own bitmaps have them.
static Path hatchLines(uint8_t style, double pixel)
{
    Path path;
    const double tile = 8 * pixel;
    const double row = 3.5 * pixel, column = 4.5 * pixel;
    const auto line = [&path](PointD from, PointD to) {
        path.moveTo(from);
        path.lineTo(to);
    };
    if (style == kHorizontal || style == kCross)
        line({ 0, row }, { tile, row });
    if (style == kVertical || style == kCross)
        line({ column, 0 }, { column, tile });
    // Diagonals go on in the corners of the tiles around.
    if (style == kForward || style == kDiagonalCross) {
        line({ 0, 0 }, { tile, tile });
        line({ -pixel, tile - pixel }, { pixel, tile + pixel });
        line({ tile - pixel, -pixel }, { tile + pixel, pixel });
    }
    if (style == kBackward || style == kDiagonalCross) {
        line({ 0, tile }, { tile, 0 });
        line({ -pixel, pixel }, { pixel, -pixel });
        line({ tile - pixel, tile + pixel }, { tile + pixel, tile - pixel });
    }
    return path;
}

Paint DeviceContext::brushPaint(const Brush &brush)
{
    if (const auto color = colorOfRop2(m_state.rop2))
        return { Paint::Kind::Solid, *color, kNone };
    if (brush.kind != Brush::Kind::Hatched)
        return { Paint::Kind::Solid, brush.color, kNone };
    const double pixel = m_device.unitsPerPixel;
    Hatch hatch;
    hatch.tile = 8 * pixel;
    hatch.origin = { m_device.view.left + m_state.brushOrigin.x * pixel,
                     m_device.view.top + m_state.brushOrigin.y * pixel };
    hatch.lines = hatchLines(brush.hatch, pixel);
    // A diagonal of pixels has as much ink as a line of this width.
    const bool isDiagonal =
            brush.hatch == kForward || brush.hatch == kBackward || brush.hatch == kDiagonalCross;
    hatch.lineWidth = isDiagonal ? pixel / std::numbers::sqrt2 : pixel;
    hatch.color = brush.color;
    if (m_state.isOpaque)
        hatch.ground = m_state.backgroundColor;
    Paint paint;
    paint.kind = Paint::Kind::Hatch;
    paint.resource = m_builder.hatch(hatch);
    return paint;
}

Index DeviceContext::fillPaint()
{
    if (m_state.brush.kind == Brush::Kind::Null)
        return kNone;
    return m_builder.paint(brushPaint(m_state.brush));
}

// No more is painted than its clip lets through, and nothing by an operation that does nothing.
bool DeviceContext::isSeen() const
{
    return m_state.rop2 != kRop2Nop && !m_state.visible->isEmpty;
}

// What is to be told of a figure that was painted over what lies beneath.
Played DeviceContext::mixed() const
{
    return m_state.rop2 == kRop2CopyPen || colorOfRop2(m_state.rop2)
            ? kDone
            : approximated("it looks different");
}

Played DeviceContext::paint(const Path &path, uint8_t parts, bool isEvenOdd)
{
    if (!isSeen() || path.isEmpty())
        return kDone;
    Node node = newNode();
    node.isEvenOdd = isEvenOdd;
    if ((parts & kFill) != 0)
        node.fill = fillPaint();
    Affine place = m_device.toPicture;
    if ((parts & kStroke) != 0 && hasPen()) {
        const Nib nib = this->nib(parts);
        place = place.then(Affine::translation(nib.offset.x, nib.offset.y));
        const bool isShaped = !nib.shape.isIdentity();
        if (isShaped && node.fill != kNone
            && m_builder.scene().paints[node.fill].kind != Paint::Kind::Solid) {
            // The shape of the pen is not to stretch the brush.
            m_builder.add(node, path, place);
            node.fill = kNone;
        }
        node.stroke = penStroke(nib, path.verbs().back() == Path::Verb::Close);
        node.transform = m_builder.transform(nib.shape);
        if (isShaped)
            place = place.then(nib.shape.inverse().value_or(Affine()));
    }
    if (node.fill == kNone && node.stroke == kNone)
        return kDone;
    m_builder.add(node, path, place);
    return mixed();
}

void DeviceContext::fillBox(const RectD &box, Color color)
{
    Node node = newNode();
    node.fill = m_builder.paint({ Paint::Kind::Solid, color, kNone });
    m_builder.add(node, Rect{ box, 0, 0 });
}

Played DeviceContext::setPixel(PointD point, Color color)
{
    if (m_state.visible->isEmpty)
        return kDone;
    const double pixel = m_device.unitsPerPixel;
    PointD at = toPicture().map(point);
    if (pixel == 1)
        at = { std::floor(at.x + 0.5), std::floor(at.y + 0.5) };
    fillBox({ at.x, at.y, at.x + pixel, at.y + pixel }, color);
    return kDone;
}

Played DeviceContext::paintRects(std::span<const RectI> rects, const Brush &brush)
{
    if (brush.kind == Brush::Kind::Null || !isSeen())
        return kDone;
    Node node = newNode();
    node.fill = m_builder.paint(brushPaint(brush));
    node.isEvenOdd = false;
    const auto boxOf = [](const RectI &rect) {
        return RectD{ double(rect.left), double(rect.top), double(rect.right),
                      double(rect.bottom) };
    };
    if (rects.size() == 1 && m_state.toDevice.keepsRectangles()) {
        const RectD box = mapBounds(toPicture(), boxOf(rects[0]));
        if (!box.isEmpty())
            m_builder.add(node, Rect{ box, 0, 0 });
        return mixed();
    }
    m_figure.clear();
    for (const RectI &rect : rects) {
        if (!rect.isEmpty())
            m_figure.addRect(boxOf(rect));
    }
    if (!m_figure.isEmpty())
        m_builder.add(node, m_figure, toPicture());
    return mixed();
}

Played DeviceContext::fillRegion(std::span<const RectI> rects, uint32_t handle)
{
    const auto *brush = object(handle) != nullptr ? std::get_if<Brush>(object(handle)) : nullptr;
    return brush != nullptr ? paintRects(rects, *brush) : notDone("its brush is not there");
}

Played DeviceContext::paintRegion(std::span<const RectI> rects)
{
    return paintRects(rects, m_state.brush);
}

Played DeviceContext::frameRegion(std::span<const RectI> rects, uint32_t handle, PointD edge)
{
    // The frame is what a region loses when it is made smaller by the edge on all sides.
    std::vector<RectI> mapped;
    const int32_t dx = truncateToInt32(std::abs(edge.x)), dy = truncateToInt32(std::abs(edge.y));
    const auto region = Region::of(rects);
    if (!region)
        return notDone("its values make no sense");
    const RectI all = region->bounds();
    const RectI around{ wrapSub(all.left, 1), wrapSub(all.top, 1), wrapAdd(all.right, 1),
                        wrapAdd(all.bottom, 1) };
    const auto outside = Region::combined(Region(around), *region, Region::Mode::Difference);
    if (!outside)
        return notDone("its values make no sense");
    for (const RectI &rect : outside->rects())
        mapped.push_back({ wrapSub(rect.left, dx), wrapSub(rect.top, dy), wrapAdd(rect.right, dx),
                           wrapAdd(rect.bottom, dy) });
    const auto grown = Region::of(mapped);
    if (!grown)
        return notDone("its values make no sense");
    const auto frame = Region::combined(*region, *grown, Region::Mode::And);
    return frame ? fillRegion(frame->rects(), handle) : notDone("its values make no sense");
}

} // namespace svgtool::picture
