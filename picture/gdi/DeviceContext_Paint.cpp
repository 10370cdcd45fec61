#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace svgtool::picture {

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
    if (brush.kind == Brush::Kind::Pattern)
        return patternPaint(brush);
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

// The same where a transform is applied to what it paints: the shape of a pen is not to stretch
// its brush, nor that of the filling.
Paint DeviceContext::unshaped(Paint paint, const Affine &shape)
{
    const auto back = shape.inverse();
    if (!back || back->isIdentity())
        return paint;
    if (paint.kind == Paint::Kind::Hatch) {
        Hatch hatch = m_builder.scene().hatches[paint.resource];
        hatch.transform = *back;
        paint.resource = m_builder.hatch(hatch);
    } else if (paint.kind == Paint::Kind::Pattern) {
        Pattern pattern = m_builder.scene().patterns[paint.resource];
        pattern.transform = *back;
        paint.resource = m_builder.pattern(pattern);
    }
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
    return operationOfRop2(m_state.rop2) != kNoOperation && !isHidden();
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
        const UsedPen &pen = usePen(parts, path.verbs().back() == Path::Verb::Close);
        const Nib &nib = pen.nib;
        place = place.then(Affine::translation(nib.offset.x, nib.offset.y));
        const bool isShaped = !nib.shape.isIdentity();
        if (isShaped && node.fill != kNone)
            node.fill = m_builder.paint(unshaped(m_builder.scene().paints[node.fill], nib.shape));
        node.stroke = pen.stroke;
        node.transform = m_builder.transform(nib.shape);
        if (isShaped)
            place = place.then(nib.shape.inverse().value_or(Affine()));
    }
    const auto add = [&](const Node &part) { m_builder.add(part, path, place); };
    return addMixed(node, std::ref(add)); // which takes no memory of its own
}

void DeviceContext::fillBox(const RectD &box, Color color)
{
    Node node = newNode();
    node.fill = m_builder.paint({ Paint::Kind::Solid, color, kNone });
    m_builder.add(node, Rect{ box, 0, 0 });
}

Played DeviceContext::setPixel(PointD point, Color color)
{
    if (isHidden())
        return kDone;
    const double pixel = m_device.unitsPerPixel;
    PointD at = toPicture().map(point);
    if (pixel == 1)
        at = { std::floor(at.x + 0.5), std::floor(at.y + 0.5) };
    fillBox({ at.x, at.y, at.x + pixel, at.y + pixel }, color);
    return kDone;
}

} // namespace svgtool::picture
