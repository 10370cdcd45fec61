#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

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

Node DeviceContext::newNode() const
{
    Node node;
    node.isEvenOdd = !m_state.isWinding;
    node.clip = m_state.clip.inScene;
    node.record = m_record;
    return node;
}

// The lines of a hatch in a tile of 8 pixels, as GDI's own bitmaps have them.
static Path hatchLines(uint8_t style, double pixel)
{
    constexpr uint8_t kHorizontal = 0, kVertical = 1, kForward = 2, kBackward = 3, kCross = 4,
                      kDiagonalCross = 5;
    Path path;
    const double tile = 8 * pixel;
    const double middle = 4.5 * pixel;
    const auto line = [&path](PointD from, PointD to) {
        path.moveTo(from);
        path.lineTo(to);
    };
    if (style == kHorizontal || style == kCross)
        line({ 0, middle }, { tile, middle });
    if (style == kVertical || style == kCross)
        line({ middle, 0 }, { middle, tile });
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

Index DeviceContext::brushPaint(const Brush &brush)
{
    if (const auto color = colorOfRop2(m_state.rop2))
        return m_builder.paint({ Paint::Kind::Solid, *color, kNone });
    if (brush.kind != Brush::Kind::Hatched)
        return m_builder.paint({ Paint::Kind::Solid, brush.color, kNone });
    const double pixel = m_device.unitsPerPixel;
    Hatch hatch;
    hatch.tile = 8 * pixel;
    hatch.origin = { m_device.view.left + m_state.brushOrigin.x * pixel,
                     m_device.view.top + m_state.brushOrigin.y * pixel };
    hatch.lines = hatchLines(brush.hatch, pixel);
    hatch.lineWidth = pixel;
    hatch.color = brush.color;
    if (m_state.isOpaque)
        hatch.ground = m_state.backgroundColor;
    Paint paint;
    paint.kind = Paint::Kind::Hatch;
    paint.resource = m_builder.hatch(hatch);
    return m_builder.paint(paint);
}

Index DeviceContext::fillPaint()
{
    if (m_state.brush.kind == Brush::Kind::Null)
        return kNone;
    return brushPaint(m_state.brush);
}

// The width of the pen in pixels of the picture, at least one.
double DeviceContext::penPixels() const
{
    const Pen &pen = m_state.pen;
    if (pen.isExtended && !pen.isGeometric)
        return 1;
    const Affine map = toPicture();
    const double scale = pen.isGeometric ? std::sqrt(std::abs(map.determinant())) : map.scaleX();
    return std::max(1.0, pen.width * scale / m_device.unitsPerPixel);
}

static std::vector<double> dashesOf(const Pen &pen, double width, bool isThin)
{
    static constexpr double kCosmetic[][6] = {
        { 18, 6 }, { 3, 3 }, { 9, 6, 3, 6 }, { 9, 3, 3, 3, 3, 3 }
    };
    static constexpr double kGeometric[][6] = {
        { 3, 1 }, { 1, 1 }, { 3, 1, 1, 1 }, { 3, 1, 1, 1, 1, 1 }
    };
    std::vector<double> dashes;
    if (pen.line >= Pen::Line::Dash && pen.line <= Pen::Line::DashDotDot) {
        if (!pen.isExtended && !isThin)
            return {};
        const size_t row = size_t(pen.line) - size_t(Pen::Line::Dash);
        for (const double dash : pen.isGeometric ? kGeometric[row] : kCosmetic[row]) {
            if (dash > 0)
                dashes.push_back(dash * width);
        }
    } else if (pen.line == Pen::Line::User) {
        for (const uint32_t dash : pen.dashes)
            dashes.push_back(dash);
    } else if (pen.line == Pen::Line::Alternate) {
        dashes = { width, width };
    }
    return dashes;
}

/// @param[out] isScaled  the stroke is in logical units and turns into an unequal one when mapped
Index DeviceContext::penStroke(bool &isScaled)
{
    const Pen &pen = m_state.pen;
    const double pixel = m_device.unitsPerPixel;
    const double pixels = penPixels();
    const bool isThin = pixels <= 1;
    const Affine map = toPicture();
    const double scaleX = map.scaleX(), scaleY = map.scaleY();
    const bool isSimilar = std::abs(scaleX - scaleY) <= 1e-3 * std::max(scaleX, scaleY)
            && std::abs(map.a * map.c + map.b * map.d) <= 1e-3 * scaleX * scaleY;
    isScaled = pen.isGeometric && !isThin && !isSimilar;

    Stroke stroke;
    stroke.paint = { Paint::Kind::Solid, colorOfRop2(m_state.rop2).value_or(pen.color), kNone };
    stroke.width = isScaled ? pen.width : pixels * pixel;
    stroke.cap = isThin ? Cap::Butt : pen.cap;
    stroke.join = isThin ? Join::Miter : pen.join;
    stroke.miterLimit = isThin ? 4 : m_state.miterLimit; // a thin line shows no miter
    stroke.dashes = dashesOf(pen, stroke.width, isThin);
    if (pen.line == Pen::Line::User && pen.isGeometric && !isScaled) {
        for (double &dash : stroke.dashes)
            dash *= std::sqrt(std::abs(map.determinant()));
    } else if (pen.line == Pen::Line::User && !pen.isGeometric) {
        constexpr double kStyleUnit = 3; // pixels, as the lengths of the usual styles have it
        for (double &dash : stroke.dashes)
            dash *= kStyleUnit * pixel;
    }
    if (!stroke.dashes.empty()
        && std::all_of(stroke.dashes.begin(), stroke.dashes.end(),
                       [](double dash) { return !(dash > 0); }))
        stroke.dashes.clear();
    return m_builder.stroke(stroke);
}

// Pixels are what GDI's pens cover: an odd number of them lies around the centre of a pixel, an
// even one around its edge.
static double pixelOffset(double pixels)
{
    return int64_t(std::floor(std::min(pixels, 1e6) + 0.5)) % 2 != 0 ? 0.5 : 0;
}

Played DeviceContext::paint(const Path &path, uint8_t parts)
{
    if (m_state.rop2 == kRop2Nop || m_state.clip.isEmpty || path.isEmpty())
        return kDone;
    const bool isExact = m_state.rop2 == kRop2CopyPen || colorOfRop2(m_state.rop2);
    Node node = newNode();
    if ((parts & kFill) != 0)
        node.fill = fillPaint();
    bool isScaled = false;
    double offset = 0;
    if ((parts & kStroke) != 0 && hasPen()) {
        node.stroke = penStroke(isScaled);
        offset = pixelOffset(penPixels()) * m_device.unitsPerPixel;
    }
    if (node.fill == kNone && node.stroke == kNone)
        return kDone;
    const Affine toDevice = toPicture().then(Affine::translation(offset, offset));
    Path drawn = path;
    if (isScaled)
        node.transform = m_builder.transform(toDevice);
    else
        drawn.transform(toDevice);
    m_builder.add(node, drawn);
    return isExact ? kDone : approximated("it looks different");
}

static RectD ordered(const RectD &box)
{
    return { std::min(box.left, box.right), std::min(box.top, box.bottom),
             std::max(box.left, box.right), std::max(box.top, box.bottom) };
}

// Rectangles, rounded ones and ellipses keep their kind where the mapping lets them.
std::optional<Played> DeviceContext::paintBox(const RectD &box, PointD corner)
{
    if (m_isInPath || !m_state.toDevice.keepsRectangles()
        || (m_state.toDevice.b != 0 && corner != PointD()))
        return std::nullopt;
    if (m_state.rop2 == kRop2Nop || m_state.clip.isEmpty)
        return kDone;
    Node node = newNode();
    node.isEvenOdd = true;
    node.fill = fillPaint();
    RectD mapped = mapBounds(toPicture(), box);
    PointD radii = toPicture().mapVector(corner);
    radii = { std::abs(radii.x), std::abs(radii.y) };
    if (hasPen()) {
        bool isScaled = false;
        node.stroke = penStroke(isScaled);
        if (isScaled)
            return std::nullopt;
        const double pixels = penPixels();
        double inside = 0;
        if (m_state.pen.line == Pen::Line::InsideFrame)
            inside = (pixels - 1) / 2 * m_device.unitsPerPixel;
        const double offset = pixelOffset(m_state.pen.line == Pen::Line::InsideFrame ? 1 : pixels)
                * m_device.unitsPerPixel;
        mapped = { mapped.left + offset + inside, mapped.top + offset + inside,
                   mapped.right + offset - inside, mapped.bottom + offset - inside };
        mapped.right = std::max(mapped.left, mapped.right);
        mapped.bottom = std::max(mapped.top, mapped.bottom);
    }
    if (node.fill == kNone && node.stroke == kNone)
        return kDone;
    const bool isExact = m_state.rop2 == kRop2CopyPen || colorOfRop2(m_state.rop2);
    const double width = mapped.width(), height = mapped.height();
    if (radii.x * 2 >= width && radii.y * 2 >= height)
        m_builder.add(
                node,
                Ellipse{ { (mapped.left + mapped.right) / 2, (mapped.top + mapped.bottom) / 2 },
                         { width / 2, height / 2 } });
    else
        m_builder.add(node,
                      Rect{ mapped, std::min(radii.x, width / 2), std::min(radii.y, height / 2) });
    return isExact ? kDone : approximated("it looks different");
}

Played DeviceContext::rectangle(const RectD &given)
{
    const RectD box = ordered(given);
    if (const auto played = paintBox(box, {}); played)
        return *played;
    Path path;
    path.addRect(box);
    return figure(path, kFill | kStroke);
}

Played DeviceContext::roundRectangle(const RectD &given, PointD corner)
{
    const RectD box = ordered(given);
    const PointD radii{ std::min(std::abs(corner.x), box.width()) / 2,
                        std::min(std::abs(corner.y), box.height()) / 2 };
    if (radii.x == 0 || radii.y == 0)
        return rectangle(box);
    if (const auto played = paintBox(box, radii); played)
        return *played;
    constexpr double kQuarter = 1.5707963267948966;
    Path path;
    path.moveTo({ box.right - radii.x, box.top });
    path.addArc({ box.right - radii.x, box.top + radii.y }, radii, -kQuarter, kQuarter);
    path.addArc({ box.right - radii.x, box.bottom - radii.y }, radii, 0, kQuarter);
    path.addArc({ box.left + radii.x, box.bottom - radii.y }, radii, kQuarter, kQuarter);
    path.addArc({ box.left + radii.x, box.top + radii.y }, radii, 2 * kQuarter, kQuarter);
    path.close();
    return figure(path, kFill | kStroke);
}

Played DeviceContext::ellipse(const RectD &given)
{
    const RectD box = ordered(given);
    const PointD radii{ box.width() / 2, box.height() / 2 };
    if (const auto played = paintBox(box, radii); played)
        return *played;
    Path path;
    path.addEllipse({ box.left + radii.x, box.top + radii.y }, radii);
    return figure(path, kFill | kStroke);
}

void DeviceContext::fillBox(const RectD &box, Color color)
{
    Node node = newNode();
    node.fill = m_builder.paint({ Paint::Kind::Solid, color, kNone });
    m_builder.add(node, Rect{ box, 0, 0 });
}

Played DeviceContext::setPixel(PointD point, Color color)
{
    if (m_state.clip.isEmpty)
        return kDone;
    const PointD at = toPicture().map(point);
    const double pixel = m_device.unitsPerPixel;
    fillBox({ at.x, at.y, at.x + pixel, at.y + pixel }, color);
    return kDone;
}

Played DeviceContext::fillRegion(std::span<const RectI> rects, uint32_t handle)
{
    const auto *brush = object(handle) != nullptr ? std::get_if<Brush>(object(handle)) : nullptr;
    if (brush == nullptr)
        return notDone("its values make no sense");
    if (brush->kind == Brush::Kind::Null || m_state.clip.isEmpty)
        return kDone;
    Node node = newNode();
    node.fill = brushPaint(*brush);
    node.isEvenOdd = false;
    Path path;
    for (const RectI &rect : rects) {
        if (!rect.isEmpty())
            path.addRect({ double(rect.left), double(rect.top), double(rect.right),
                           double(rect.bottom) });
    }
    path.transform(toPicture());
    if (!path.isEmpty())
        m_builder.add(node, path);
    return kDone;
}

Played DeviceContext::paintRegion(std::span<const RectI> rects)
{
    const uint32_t own = uint32_t(m_objects.size());
    m_objects.emplace_back(m_state.brush);
    const Played played = fillRegion(rects, own);
    m_objects.pop_back();
    return played;
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
