#include "picture/gdiplus/Brushes.h"
#include "picture/gdiplus/Graphics.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

Node Graphics::newNode() const
{
    Node node;
    node.clip = clip();
    node.record = m_record;
    node.isExact = true;
    return node;
}

Paint Graphics::hatchPaint(const plus::HatchBrush &brush)
{
    constexpr double kTile = 8;
    const double pixel = m_device.unitsPerPixel;
    HatchLines lines = hatchLines(brush.style);
    lines.path.transform(Affine::scale(pixel, pixel));
    Hatch hatch;
    hatch.tile = kTile * pixel;
    hatch.origin = { m_device.view.left + m_state.renderingOrigin.x * pixel,
                     m_device.view.top + m_state.renderingOrigin.y * pixel };
    hatch.lines = std::move(lines.path);
    hatch.lineWidth = lines.width * pixel;
    hatch.color = colorOf(brush.foreColor);
    if (colorOf(brush.backColor).alpha != 0)
        hatch.ground = colorOf(brush.backColor);
    return { Paint::Kind::Hatch, {}, m_builder.hatch(hatch) };
}

Paint Graphics::linearPaint(const plus::LinearGradientBrush &brush, const Affine &toNode,
                            const Path *figure)
{
    const double width = brush.box.width();
    const Ramp inBox{ -brush.box.left / width, { 1 / width, 0 } };
    const auto inWorld = inBox.mapped(brush.transform);
    const auto inNode = inBox.mapped(brush.transform.then(toNode));
    if (!(width > 0) || !inNode || !inWorld)
        return { Paint::Kind::Solid, averageOf(brush), kNone };
    auto stops = stopsOf(brush);
    if (std::ranges::all_of(stops, [&](const auto &stop) { return stop.color == stops[0].color; }))
        return { Paint::Kind::Solid, stops[0].color, kNone };
    Gradient gradient = gradientOf(*inNode, std::move(stops));
    // It goes on behind its ends, which is not said where nothing is seen of that.
    double first = 0, last = figure != nullptr ? 1 : HUGE_VAL;
    if (figure != nullptr) {
        for (const PointD &point : figure->points()) {
            first = std::fmin(first, inWorld->at(point));
            last = std::fmax(last, inWorld->at(point));
        }
    }
    const double pixel = std::hypot(inNode->slope.x, inNode->slope.y) * m_device.unitsPerPixel;
    if (brush.wrapMode != plus::WrapMode::Clamp && (first < -pixel || last > 1 + pixel)) {
        const bool isMirrored =
                brush.wrapMode == plus::WrapMode::FlipX || brush.wrapMode == plus::WrapMode::FlipXY;
        gradient.spread = isMirrored ? Gradient::Spread::Reflect : Gradient::Spread::Repeat;
    }
    return { Paint::Kind::Gradient, {}, m_builder.gradient(gradient) };
}

/// @param place  pixels of the image to units of the node
std::optional<Paint> Graphics::patternPaint(const KnownImage &image, plus::WrapMode wrapMode,
                                            const Affine &place)
{
    using plus::WrapMode;
    if (!std::isfinite(1 / place.determinant()))
        return std::nullopt;
    Pattern pattern;
    pattern.image = image.number;
    pattern.tile = { 0, 0, double(image.size.width), double(image.size.height) };
    pattern.transform = place;
    pattern.mirrorsX = wrapMode == WrapMode::FlipX || wrapMode == WrapMode::FlipXY;
    pattern.mirrorsY = wrapMode == WrapMode::FlipY || wrapMode == WrapMode::FlipXY;
    pattern.isSmooth = !keepsPixels();
    return Paint{ Paint::Kind::Pattern, {}, m_builder.pattern(pattern) };
}

Paint Graphics::paintOf(const plus::Brush &brush, const Affine &toNode, const Path *figure)
{
    if (const auto *const hatch = std::get_if<plus::HatchBrush>(&brush))
        return hatchPaint(*hatch);
    if (const auto *const linear = std::get_if<plus::LinearGradientBrush>(&brush))
        return linearPaint(*linear, toNode, figure);
    if (const auto *const texture = std::get_if<plus::TextureBrush>(&brush)) {
        const auto image = imageOf(texture->image);
        const auto paint = image
                ? patternPaint(*image, texture->wrapMode, texture->transform.then(toNode))
                : std::nullopt;
        if (paint)
            return *paint;
    }
    if (const auto *const path = std::get_if<plus::PathGradientBrush>(&brush)) {
        if (const auto paint = radialPaint(*path, toNode))
            return *paint;
    }
    const Color color = averageOf(brush);
    return { Paint::Kind::Solid, m_state.isCopying ? onPaper(color) : color, kNone };
}

// A node of its kind, where the transform leaves it one that viewers draw.
void Graphics::addFigure(Node node, const Figure &figure)
{
    const Affine &map = m_state.toPicture;
    node.isEvenOdd = figure.isEvenOdd;
    const RectD box = mapBounds(map, figure.box);
    if (figure.kind == Figure::Kind::Path || !map.keepsRectangles() || box.isEmpty()) {
        m_builder.add(node, pathOf(figure), map);
        return;
    }
    if (figure.kind == Figure::Kind::Box)
        m_builder.add(node, Rect{ box, 0, 0 });
    else
        m_builder.add(node,
                      Ellipse{ { (box.left + box.right) / 2, (box.top + box.bottom) / 2 },
                               { box.width() / 2, box.height() / 2 } });
}

bool Graphics::hasStops(const plus::Brush &brush)
{
    const auto count = [](const auto &gradient) {
        return (gradient.colors.size() + gradient.factors.size()) * limits::kPointsOfStop;
    };
    if (const auto *const linear = std::get_if<plus::LinearGradientBrush>(&brush))
        return spend(count(*linear));
    if (const auto *const path = std::get_if<plus::PathGradientBrush>(&brush))
        return spend(count(*path) + path->surroundColors.size()
                     + path->boundary.outline.points().size());
    return true;
}

Played Graphics::fill(const plus::Brush &brush, const Figure &figure)
{
    if (isClippedAway())
        return kDone;
    if (!hasStops(brush))
        return notDone("its brush has been used too often");
    const auto *const solid = std::get_if<plus::SolidBrush>(&brush);
    if (solid != nullptr && colorOf(solid->color).alpha == 0 && !m_state.isCopying)
        return kDone;
    if (m_state.isCopying && solid == nullptr && !isOpaque(brush)) {
        Node paper = newNode();
        paper.fill = m_builder.paint({ Paint::Kind::Solid, { 255, 255, 255, 255 }, kNone });
        addFigure(paper, figure);
    }
    if (const auto *const gradient = std::get_if<plus::PathGradientBrush>(&brush))
        return fillPathGradient(*gradient, figure);
    const auto *const texture = std::get_if<plus::TextureBrush>(&brush);
    if (texture != nullptr && texture->wrapMode == plus::WrapMode::Clamp)
        return fillOnce(*texture, figure);
    if (texture != nullptr && !imageOf(texture->image))
        return notDone("the image of its brush cannot be read");
    const Path path = pathOf(figure);
    Node node = newNode();
    node.fill = m_builder.paint(paintOf(brush, m_state.toPicture, &path));
    addFigure(node, figure);
    return kDone;
}

// The clip in force, cut to a figure.
Index Graphics::clipTo(const Figure &figure)
{
    Area area{ pathOf(figure), figure.isEvenOdd };
    area.path.transform(m_state.toPicture);
    return clipTo(area);
}

// A texture that is not repeated is an image.
Played Graphics::fillOnce(const plus::TextureBrush &brush, const Figure &figure)
{
    const auto image = imageOf(brush.image);
    if (!image)
        return notDone("the image of its brush cannot be read");
    Node node = newNode();
    node.clip = clipTo(figure);
    node.transform = m_builder.transform(brush.transform.then(m_state.toPicture));
    m_builder.add(node,
                  ImagePlace{ image->number,
                              { 0, 0, double(image->size.width), double(image->size.height) },
                              keepsPixels() });
    return kDone;
}

} // namespace svgtool::picture
