#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace svgtool::picture {

namespace {

    using Vertex = GradientVertex;

    // As large as an image of them gets, and as many as it is cut to.
    constexpr double kMostImagePixels = 1 << 22;
    constexpr size_t kMostClipped = 4096;

    Color colorOf(const std::array<double, 3> &channels)
    {
        const auto byte = [](double value) { return uint8_t(std::clamp(value, 0.0, 255.0)); };
        return { byte(channels[0]), byte(channels[1]), byte(channels[2]), 255 };
    }

    // A number as it changes over the plane: value = atOrigin + x * slope.x + y * slope.y.
    struct Plane
    {
        double atOrigin = 0;
        PointD slope;

        double at(PointD p) const { return atOrigin + p.x * slope.x + p.y * slope.y; }
    };

    struct Triangle
    {
        std::array<PointD, 3> corners; ///< in units of the picture
        std::array<Plane, 3> channels;
        std::array<Plane, 3> depths = {}; ///< how far inside of each edge

        RectD bounds() const
        {
            const auto [left, right] = std::minmax({ corners[0].x, corners[1].x, corners[2].x });
            const auto [top, bottom] = std::minmax({ corners[0].y, corners[1].y, corners[2].y });
            return { left, top, right, bottom };
        }
        Color colorAt(PointD p) const
        {
            return colorOf({ channels[0].at(p), channels[1].at(p), channels[2].at(p) });
        }
        // How far inside a point lies; negative outside.
        double depth(PointD p) const
        {
            return std::min({ depths[0].at(p), depths[1].at(p), depths[2].at(p) });
        }
    };

    // How far a point lies to the side of a line on which a triangle is that turns so.
    Plane depthOf(PointD from, PointD to, double turn)
    {
        const double length = std::copysign(std::hypot(to.x - from.x, to.y - from.y), turn);
        Plane depth;
        depth.slope = { (from.y - to.y) / length, (to.x - from.x) / length };
        depth.atOrigin = -(from.x * depth.slope.x + from.y * depth.slope.y);
        return depth;
    }

    // Nothing for one without an area.
    std::optional<Triangle> triangleOf(const std::array<const Vertex *, 3> &vertices,
                                       const Affine &toPicture)
    {
        Triangle triangle;
        for (size_t i = 0; i < 3; ++i)
            triangle.corners[i] =
                    toPicture.map({ double(vertices[i]->at.x), double(vertices[i]->at.y) });
        const auto &[a, b, c] = triangle.corners;
        const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!std::isfinite(1 / area))
            return std::nullopt;
        for (size_t i = 0; i < 3; ++i) {
            const double first = vertices[0]->channels[i];
            const double second = vertices[1]->channels[i] - first;
            const double third = vertices[2]->channels[i] - first;
            Plane &plane = triangle.channels[i];
            plane.slope = { (second * (c.y - a.y) - third * (b.y - a.y)) / area,
                            (third * (b.x - a.x) - second * (c.x - a.x)) / area };
            plane.atOrigin = first - a.x * plane.slope.x - a.y * plane.slope.y;
            triangle.depths[i] = depthOf(triangle.corners[i], triangle.corners[(i + 1) % 3], area);
        }
        return triangle;
    }

    // The direction in which all channels change, if it is one; of no length where none changes.
    std::optional<PointD> directionOf(const Triangle &triangle)
    {
        PointD longest;
        for (const Plane &plane : triangle.channels) {
            if (std::hypot(plane.slope.x, plane.slope.y) > std::hypot(longest.x, longest.y))
                longest = plane.slope;
        }
        const double length = std::hypot(longest.x, longest.y);
        for (const Plane &plane : triangle.channels) {
            const double across = plane.slope.x * longest.y - plane.slope.y * longest.x;
            if (std::abs(across) > 1e-6 * length * length)
                return std::nullopt;
        }
        if (length == 0)
            return PointD();
        return PointD{ longest.x / length, longest.y / length };
    }

    // Pixels of the triangles. Those that lie apart from them by up to `margin` have the colour of
    // the first one that they are next to.
    void drawTriangles(Bitmap &pixels, std::span<const Triangle> triangles, PointD origin,
                       double pixel, double margin)
    {
        for (const Triangle &triangle : triangles) {
            const RectD box = triangle.bounds();
            const auto place = [pixel, margin](double at, double from, int32_t most, double more) {
                const double number = std::floor((at - from + more * margin) / pixel);
                return int32_t(std::clamp(number, 0.0, double(most) - 1));
            };
            const int32_t left = place(box.left, origin.x, pixels.width(), -1);
            const int32_t right = place(box.right, origin.x, pixels.width(), 1);
            const int32_t bottom = place(box.bottom, origin.y, pixels.height(), 1);
            for (int32_t y = place(box.top, origin.y, pixels.height(), -1); y <= bottom; ++y) {
                uint8_t *const line = pixels.line(y);
                for (int32_t x = left; x <= right; ++x) {
                    uint8_t *const bytes = line + size_t(x) * 4;
                    // A pixel has the colour of its corner, and belongs where its centre lies.
                    const PointD corner{ origin.x + x * pixel, origin.y + y * pixel };
                    const PointD center{ corner.x + pixel / 2, corner.y + pixel / 2 };
                    if ((margin > 0 && bytes[3] != 0) || triangle.depth(center) < -margin)
                        continue;
                    const Color color = triangle.colorAt(corner);
                    bytes[0] = color.blue;
                    bytes[1] = color.green;
                    bytes[2] = color.red;
                    bytes[3] = 255;
                }
            }
        }
    }

} // namespace

// A fill whose colour changes along one line, from a place where it has the first one to another.
Paint DeviceContext::gradientPaint(PointD from, PointD to, Color first, Color last)
{
    if (first == last)
        return { Paint::Kind::Solid, first, kNone };
    Gradient gradient;
    gradient.from = from;
    gradient.to = to;
    gradient.stops = { { 0, first }, { 1, last } };
    // GDI gives each pixel the colour of its corner, viewers that of its centre.
    const double half = m_device.unitsPerPixel / 2;
    for (PointD *const end : { &gradient.from, &gradient.to })
        *end = { end->x + half, end->y + half };
    return { Paint::Kind::Gradient, {}, m_builder.gradient(gradient) };
}

void DeviceContext::fillGradientRect(const Vertex &first, const Vertex &second, bool isUpright)
{
    BlitBox box{ first.at, {} };
    box.extent = { wrapSub(second.at.x, first.at.x), wrapSub(second.at.y, first.at.y) };
    if (box.extent.x < 0) {
        box.at.x = second.at.x;
        box.extent.x = wrapSub(0, box.extent.x);
    }
    if (box.extent.y < 0) {
        box.at.y = second.at.y;
        box.extent.y = wrapSub(0, box.extent.y);
    }
    const auto place = this->place(box, { 0, 0, 1, 1 }, { 1, 1 });
    const auto back = toPicture().inverse();
    if (!place || !back)
        return;
    // How far a point is from the first edge to the second, and where that grows the fastest.
    const PointD slope = isUpright ? PointD{ back->b, back->d } : PointD{ back->a, back->c };
    const double squared = slope.x * slope.x + slope.y * slope.y;
    const double length =
            isUpright ? double(second.at.y) - first.at.y : double(second.at.x) - first.at.x;
    const PointD from = toPicture().map({ double(first.at.x), double(first.at.y) });
    const PointD to{ from.x + slope.x / squared * length, from.y + slope.y / squared * length };
    Node node = newNode();
    node.transform = m_builder.transform(place->transform);
    if (node.transform != kNone) {
        // Of what is filled, the gradient would be turned with it.
        Path path;
        path.addRect(place->box);
        node.transform = kNone;
        node.fill = m_builder.paint(
                gradientPaint(from, to, colorOf(first.channels), colorOf(second.channels)));
        m_builder.add(node, path, place->transform);
        return;
    }
    node.fill = m_builder.paint(
            gradientPaint(from, to, colorOf(first.channels), colorOf(second.channels)));
    m_builder.add(node, Rect{ place->box, 0, 0 });
}

// An image of triangles whose colours change in more than one direction, cut to their edges.
Played DeviceContext::fillTriangleImage(std::span<const Triangle3> corners)
{
    std::vector<Triangle> triangles;
    RectD bounds;
    Path outline;
    const double pixel = m_device.unitsPerPixel;
    double pixelsOfAll = 0;
    for (const Triangle3 &three : corners) {
        const auto triangle = triangleOf(three, toPicture());
        if (!triangle)
            continue;
        const RectD box = intersection(triangle->bounds(), m_device.view);
        if (box.isEmpty())
            continue;
        pixelsOfAll += (box.width() / pixel + 2) * (box.height() / pixel + 2);
        bounds = triangles.empty()
                ? box
                : RectD{ std::fmin(bounds.left, box.left), std::fmin(bounds.top, box.top),
                         std::fmax(bounds.right, box.right), std::fmax(bounds.bottom, box.bottom) };
        triangles.push_back(*triangle);
        outline.moveTo(triangle->corners[0]);
        outline.lineTo(triangle->corners[1]);
        outline.lineTo(triangle->corners[2]);
        outline.close();
    }
    if (triangles.empty())
        return kDone;
    const double area = bounds.width() / pixel * (bounds.height() / pixel);
    pixelsOfAll += area; // they may lie far apart
    if (!(pixelsOfAll <= m_left.gradientPixels && area <= kMostImagePixels))
        return notDone("its triangles are too large");
    m_left.gradientPixels -= pixelsOfAll;
    const PointD origin{
        m_device.view.left + std::floor((bounds.left - m_device.view.left) / pixel) * pixel,
        m_device.view.top + std::floor((bounds.top - m_device.view.top) / pixel) * pixel
    };
    const IntSize size{ int32_t(std::ceil((bounds.right - origin.x) / pixel)),
                        int32_t(std::ceil((bounds.bottom - origin.y) / pixel)) };
    Bitmap pixels(PixelFormat::Bgra32, size);
    drawTriangles(pixels, triangles, origin, pixel, 0);
    const bool isCut = triangles.size() <= kMostClipped;
    if (isCut)
        drawTriangles(pixels, triangles, origin, pixel, 1.5 * pixel);
    BlitPlace place;
    place.box = { origin.x, origin.y, origin.x + size.width * pixel,
                  origin.y + size.height * pixel };
    const size_t node = m_builder.mark().nodes;
    paintPixels(std::move(pixels), place, 1);
    if (isCut && m_builder.mark().nodes > node)
        m_builder.scene().nodes[node].clip = m_builder.clip({ visibleClip(), outline, false });
    return kDone;
}

Played DeviceContext::fillTriangles(std::span<const Triangle3> corners)
{
    std::vector<Triangle3> others;
    for (const Triangle3 &three : corners) {
        const auto triangle = triangleOf(three, toPicture());
        if (!triangle || intersection(triangle->bounds(), m_device.view).isEmpty())
            continue;
        const auto direction = directionOf(*triangle);
        if (!direction) {
            others.push_back(three);
            continue;
        }
        const auto &[a, b, c] = triangle->corners;
        const auto along = [u = *direction](PointD p) { return p.x * u.x + p.y * u.y; };
        const auto [first, last] = std::minmax({ along(a), along(b), along(c) });
        const double at = along(a);
        const auto pointAt = [at, start = a, u = *direction](double distance) {
            return PointD{ start.x + (distance - at) * u.x, start.y + (distance - at) * u.y };
        };
        const PointD from = pointAt(first), to = pointAt(last);
        Node node = newNode();
        node.fill = m_builder.paint(
                gradientPaint(from, to, triangle->colorAt(from), triangle->colorAt(to)));
        Path path;
        path.moveTo(a);
        path.lineTo(b);
        path.lineTo(c);
        path.close();
        m_builder.add(node, path);
    }
    return fillTriangleImage(others);
}

Played DeviceContext::gradientFill(std::span<const GradientVertex> vertices,
                                   std::span<const uint32_t> indices, uint32_t mode)
{
    constexpr uint32_t kUpright = 1, kTriangles = 2;
    if (mode > kTriangles)
        return notDone("its mode is not known");
    const size_t corners = mode == kTriangles ? 3 : 2;
    if (std::any_of(indices.begin(), indices.end(),
                    [&](uint32_t index) { return index >= vertices.size(); }))
        return notDone("it names points that it lacks");
    if (isHidden())
        return kDone;
    std::vector<Triangle3> triangles;
    for (size_t i = 0; i + corners <= indices.size(); i += corners) {
        const auto vertex = [&](size_t corner) { return &vertices[indices[i + corner]]; };
        if (mode == kTriangles)
            triangles.push_back({ vertex(0), vertex(1), vertex(2) });
        else
            fillGradientRect(*vertex(0), *vertex(1), mode == kUpright);
    }
    return fillTriangles(triangles);
}

} // namespace svgtool::picture
