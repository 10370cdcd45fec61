#include "picture/gdiplus/Brushes.h"
#include "picture/gdiplus/Graphics.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    using Stops = std::vector<Gradient::Stop>;

    PointD between(PointD a, PointD b, double part)
    {
        return { a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part };
    }

    // Makes the unit circle into the ellipse that a path is, upright as it lies; nothing for
    // others.
    std::optional<Affine> circleOf(const Path &path)
    {
        constexpr double kSame = 0.002; // of the radius
        const RectD box = path.bounds();
        const Affine circle{
            box.width() / 2,           0, 0, box.height() / 2, (box.left + box.right) / 2,
            (box.top + box.bottom) / 2
        };
        const auto back = circle.inverse();
        if (!back || path.verbs().size() < 5)
            return std::nullopt;
        PointD current;
        size_t next = 0;
        for (const Path::Verb verb : path.verbs()) {
            if (verb == Path::Verb::Close)
                continue;
            if (verb == Path::Verb::Move && next == 0) {
                current = path.points()[next++];
                continue;
            }
            if (verb != Path::Verb::Curve)
                return std::nullopt;
            const PointD a = path.points()[next], b = path.points()[next + 1];
            const PointD end = path.points()[next + 2];
            next += 3;
            const PointD middle{ (current.x + 3 * a.x + 3 * b.x + end.x) / 8,
                                 (current.y + 3 * a.y + 3 * b.y + end.y) / 8 };
            for (const PointD &point : { back->map(middle), back->map(end) }) {
                if (std::abs(std::hypot(point.x, point.y) - 1) > kSame)
                    return std::nullopt;
            }
            current = end;
        }
        return circle;
    }

    // Stops from the boundary to the centre, or to where its colour begins, as those of a circle,
    // which begin at its focus.
    Stops fromFocus(const Stops &stops, double focus)
    {
        Stops result;
        for (auto stop = stops.rbegin(); stop != stops.rend(); ++stop)
            result.push_back({ focus + (1 - focus) * (1 - stop->offset), stop->color });
        return result;
    }

    Color surroundAt(const plus::PathGradientBrush &brush, size_t point)
    {
        const auto &colors = brush.surroundColors;
        if (colors.empty())
            return colorOf(brush.centerColor);
        return colorOf(colors[std::min(point, colors.size() - 1)]);
    }

    bool hasOneSurround(const plus::PathGradientBrush &brush)
    {
        return brush.surroundColors.empty()
                || std::ranges::all_of(brush.surroundColors,
                                       [&](plus::Argb c) { return c == brush.surroundColors[0]; });
    }

    // A part of the boundary, and its colour.
    struct Edge
    {
        PointD from, to;
        Color color;
    };

    int differenceOf(Color a, Color b)
    {
        return std::max({ std::abs(a.red - b.red), std::abs(a.green - b.green),
                          std::abs(a.blue - b.blue), std::abs(a.alpha - b.alpha) });
    }

    // Edges that are so short that each has one colour, as near as it can be seen.
    void addEdges(std::vector<Edge> &edges, PointD from, PointD to, Color first, Color last,
                  double shortest)
    {
        constexpr double kLevels = 4; // of a channel
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (!(length > 0))
            return;
        const double pieces =
                std::ceil(std::fmin(differenceOf(first, last) / kLevels, length / shortest));
        const int count = std::max(1, int(pieces));
        for (int i = 0; i < count; ++i)
            edges.push_back({ between(from, to, double(i) / count),
                              between(from, to, double(i + 1) / count),
                              mixed(first, last, (i + 0.5) / count) });
    }

    // Around the boundary, in the units of the brush.
    std::vector<Edge> edgesOf(const plus::PathGradientBrush &brush, double pixel, size_t most)
    {
        std::vector<Edge> edges;
        const Path &path = brush.boundary.outline;
        const bool isCurved = std::ranges::count(path.verbs(), Path::Verb::Curve) > 0;
        const auto lines = path.flattened(pixel / 4, most);
        if (!lines)
            return edges;
        PointD start, current;
        size_t next = 0, first = 0;
        // The colours of points on curves lie too close to each other to matter.
        const auto colorAt = [&](size_t point) { return surroundAt(brush, isCurved ? 0 : point); };
        const auto lineTo = [&](PointD to, size_t number) {
            addEdges(edges, current, to, colorAt(next - 1), colorAt(number), 1.5 * pixel);
            current = to;
        };
        for (const Path::Verb verb : lines->verbs()) {
            if (edges.size() > most)
                return {};
            if (verb == Path::Verb::Line) {
                const PointD to = lines->points()[next];
                lineTo(to, next);
                ++next;
                continue;
            }
            if (next > first)
                lineTo(start, first);
            if (verb == Path::Verb::Move) {
                first = next;
                start = current = lines->points()[next++];
            }
        }
        if (next > first)
            lineTo(start, first);
        return edges;
    }

} // namespace

std::optional<Paint> Graphics::radialPaint(const plus::PathGradientBrush &brush,
                                           const Affine &toNode)
{
    const auto circle = circleOf(brush.boundary.outline);
    if (!circle || !hasOneSurround(brush) || brush.focusScales.x != brush.focusScales.y)
        return std::nullopt;
    const Affine place = circle->then(brush.transform).then(toNode);
    Gradient gradient;
    gradient.isRadial = true;
    gradient.from = circle->inverse()->map(brush.center);
    constexpr double kCentre = 1e-4, kInside = 0.99;
    const double away = std::hypot(gradient.from.x, gradient.from.y);
    if (!std::isfinite(1 / place.determinant()) || away > kInside)
        return std::nullopt;
    if (away < kCentre)
        gradient.from = {};
    gradient.transform = place;
    gradient.stops = fromFocus(stopsOf(brush, surroundAt(brush, 0)),
                               std::clamp(brush.focusScales.x, 0.0, 1.0));
    return Paint{ Paint::Kind::Gradient, {}, m_builder.gradient(gradient) };
}

// Fills a figure with tiles of the boundary and what lies in it.
Played Graphics::fillPathGradient(const plus::PathGradientBrush &brush, const Figure &figure)
{
    const Affine toPicture = brush.transform.then(m_state.toPicture);
    const auto back = brush.transform.inverse();
    const RectD tile = brush.boundary.outline.bounds();
    if (!back || tile.isEmpty() || !std::isfinite(1 / toPicture.determinant()))
        return notDone("its brush has no area");
    RectD shown = mapBounds(*back, pathOf(figure).bounds());
    if (const auto fromPicture = toPicture.inverse())
        shown = intersection(shown, mapBounds(*fromPicture, m_device.view));
    if (shown.isEmpty())
        return kDone;
    // Of a boundary within the figure all is seen.
    const double slack = m_device.unitsPerPixel / 4 / std::sqrt(std::abs(toPicture.determinant()));
    const auto isWithin = [slack](const RectD &inner, const RectD &outer) {
        return outer.left - slack <= inner.left && outer.top - slack <= inner.top
                && inner.right <= outer.right + slack && inner.bottom <= outer.bottom + slack;
    };
    Path boundary = brush.boundary.outline;
    boundary.transform(brush.transform);
    const Path outline = pathOf(figure);
    const bool isSame = figure.kind == Figure::Kind::Box
            ? brush.transform.isIdentity() && isWithin(tile, figure.box)
            : std::ranges::equal(boundary.points(), outline.points(), [slack](PointD a, PointD b) {
                  return std::abs(a.x - b.x) <= slack && std::abs(a.y - b.y) <= slack;
              });
    const Index clip = isSame ? this->clip() : clipTo(figure);
    const bool isTiled = brush.wrapMode != plus::WrapMode::Clamp && !isWithin(shown, tile);
    const double width = tile.width(), height = tile.height();
    const double left = isTiled ? std::floor((shown.left - tile.left) / width + 0.01) : 0;
    const double right = isTiled ? std::ceil((shown.right - tile.left) / width - 0.01) : 1;
    const double top = isTiled ? std::floor((shown.top - tile.top) / height + 0.01) : 0;
    const double bottom = isTiled ? std::ceil((shown.bottom - tile.top) / height - 0.01) : 1;
    const double columns = right - left, rows = bottom - top;
    const auto most = double(m_left.meshPieces);
    if (!(columns <= most && rows <= most && columns * rows <= most))
        return fillFlat(brush, figure);
    const bool flipsX =
            brush.wrapMode == plus::WrapMode::FlipX || brush.wrapMode == plus::WrapMode::FlipXY;
    const bool flipsY =
            brush.wrapMode == plus::WrapMode::FlipY || brush.wrapMode == plus::WrapMode::FlipXY;
    for (int row = 0; row < int(rows); ++row) {
        for (int column = 0; column < int(columns); ++column) {
            const double x = left + column, y = top + row;
            Affine place = Affine::translation(x * width, y * height);
            if (flipsX && std::fmod(x, 2) != 0)
                place = Affine{ -1, 0, 0, 1, tile.left + tile.right, 0 }.then(place);
            if (flipsY && std::fmod(y, 2) != 0)
                place = Affine{ 1, 0, 0, -1, 0, tile.top + tile.bottom }.then(place);
            if (!fillTile(brush, place.then(toPicture), clip))
                return fillFlat(brush, figure);
        }
    }
    return kDone;
}

// In the place of what is too much: one colour.
Played Graphics::fillFlat(const plus::PathGradientBrush &brush, const Figure &figure)
{
    Node node = newNode();
    node.fill = m_builder.paint({ Paint::Kind::Solid, averageOf(brush), kNone });
    addFigure(node, figure);
    return approximated("its gradient has too many parts, and is drawn in one colour");
}

/// @param place  from the units of the brush to those of the picture
/// @return false where that takes too many pieces
bool Graphics::fillTile(const plus::PathGradientBrush &brush, const Affine &place, Index clip)
{
    Node node = newNode();
    node.clip = clip;
    node.isEvenOdd = !brush.boundary.isWinding;
    const auto back = brush.transform.inverse();
    const size_t stops = (brush.colors.size() + brush.factors.size()) * limits::kPointsOfStop;
    const size_t work =
            brush.boundary.outline.points().size() + brush.surroundColors.size() + stops;
    if (m_left.meshPieces == 0 || !spend(work))
        return false;
    if (const auto radial = radialPaint(brush, back->then(place))) {
        --m_left.meshPieces;
        node.fill = m_builder.paint(*radial);
        m_builder.add(node, brush.boundary.outline, place);
        return true;
    }
    const double pixel = m_device.unitsPerPixel / std::sqrt(std::abs(place.determinant()));
    const size_t most = std::min(m_left.meshPieces, limits::kMeshPieces);
    const auto edges = edgesOf(brush, pixel, most);
    if (edges.empty() || edges.size() > most || !spend(edges.size() * stops))
        return false;
    m_left.meshPieces -= edges.size();
    const PointD center = brush.center, scale = brush.focusScales;
    const auto inner = [&](PointD p) {
        return PointD{ center.x + (p.x - center.x) * scale.x,
                       center.y + (p.y - center.y) * scale.y };
    };
    const bool hasFocus = scale.x > 0 && scale.y > 0;
    const bool isWhole = isOpaque(brush);
    const Color inside = stopsOf(brush, surroundAt(brush, 0)).back().color;
    if (isWhole) {
        // Where the pieces get narrow, what shows between them has nearly their colour.
        const Affine half = Affine::translation(-center.x, -center.y)
                                    .then(Affine::scale(0.5, 0.5))
                                    .then(Affine::translation(center.x, center.y));
        node.fill = m_builder.paint({ Paint::Kind::Solid, inside, kNone });
        m_builder.add(node, brush.boundary.outline, half.then(place));
    }
    Path middle; // which has the colour of the centre
    for (size_t i = 0; i < edges.size(); ++i) {
        const Edge &edge = edges[i];
        const PointD from = edge.from, to = edge.to;
        const double x = to.x - from.x, y = to.y - from.y;
        const PointD within = inner(between(from, to, 0.5));
        const double depth = (within.x - from.x) * -y + (within.y - from.y) * x;
        i == 0 ? middle.moveTo(inner(from)) : middle.lineTo(inner(from));
        const Ramp inBrush{ (from.x * y - from.y * x) / depth, { -y / depth, x / depth } };
        const auto ramp = inBrush.mapped(place);
        if (!std::isfinite(1 / depth) || !ramp)
            continue;
        node.fill = m_builder.paint(
                { Paint::Kind::Gradient,
                  {},
                  m_builder.gradient(gradientOf(*ramp, stopsOf(brush, edge.color))) });
        Path piece;
        piece.moveTo(from);
        piece.lineTo(to);
        // It reaches a little below the next one, so that nothing shows between them.
        const Edge &next = edges[(i + 1) % edges.size()];
        const double length = std::hypot(next.to.x - next.from.x, next.to.y - next.from.y);
        if (isWhole && next.from == to)
            piece.lineTo(between(to, next.to, std::fmin(1, pixel / length)));
        piece.lineTo(inner(to));
        if (hasFocus)
            piece.lineTo(inner(from));
        piece.close();
        m_builder.add(node, piece, place);
    }
    middle.close();
    if (hasFocus) {
        node.fill = m_builder.paint({ Paint::Kind::Solid, inside, kNone });
        m_builder.add(node, middle, place);
    }
    return true;
}

} // namespace svgtool::picture
