#include "picture/gdiplus/Brushes.h"
#include "picture/gdiplus/Graphics.h"
#include "picture/gdiplus/LineEnds.h"

#include "core/geometry/Lines.h"
#include "core/geometry/Outline.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

// A stroke in parts: what viewers have no stroke for is drawn as figures. Units are those of the
// node, in which the tip of the pen is a circle.
class Graphics::StrokeParts
{
public:
    /// @param points  that ends may have in all; what is left of them
    StrokeParts(const plus::Pen &pen, double width, double pixel, size_t &points)
        : m_width(width), m_pixel(pixel), m_points(points)
    {
        // What hides it may lie a little over the line, so that nothing shows between them.
        const double over = isOpaque(pen.brush) ? 0.05 : 0;
        m_start = pen.customStartCap ? lineEnd(*pen.customStartCap, over)
                                     : lineEnd(pen.startCap, over);
        m_end = pen.customEndCap ? lineEnd(*pen.customEndCap, over) : lineEnd(pen.endCap, over);
        m_dash = dashEnd(pen.dashCap, over);
        const bool hasRoundLine = !pen.customStartCap && !pen.customEndCap
                && pen.startCap == plus::LineCap::Round && pen.endCap == plus::LineCap::Round;
        isRound = hasRoundLine && pen.dashCap == plus::DashCap::Round;
    }

    /// @param dashes  to cut the figure at; none where the stroke of the body has them
    /// @return false where there are too many
    bool add(const Path &figure, const std::vector<double> &dashes, double offset, double tolerance,
             size_t &most);

    Path body; ///< is stroked
    Path fill; ///< by the winding rule
    std::vector<std::pair<LineEnd, Path>> lines; ///< are stroked each in its own way
    bool isRound = false; ///< all ends of the body are
    double startInset = 0; ///< of the body

private:
    void addOpen(const Path &figure, const LineEnd &start, const LineEnd &end);
    Path cut(const Path &figure, const LineEnd &end);

    double m_width, m_pixel;
    size_t &m_points;
    LineEnd m_start, m_end, m_dash;
};

// Puts an end on a figure, and gives what is left of that.
Path Graphics::StrokeParts::cut(const Path &figure, const LineEnd &end)
{
    constexpr double kAnchor = 2; // pixels
    const double size = end.isAnchor ? std::fmax(m_width, kAnchor * m_pixel) : m_width;
    LineEndPlace place = endOf(figure);
    const double inset = end.inset * size;
    Path left = inset > 0 ? withoutEnd(figure, inset) : figure;
    // What reaches back along a curve points from there.
    if (inset > 0 && !left.points().empty()) {
        const PointD from = left.points().back();
        const double length = std::hypot(place.point.x - from.x, place.point.y - from.y);
        if (length > 0)
            place.direction = { (place.point.x - from.x) / length,
                                (place.point.y - from.y) / length };
    }
    const PointD &along = place.direction;
    const Affine map{ along.y * size, -along.x * size, along.x * size,
                      along.y * size, place.point.x,   place.point.y };
    const size_t points = end.fill.points().size() + end.line.points().size();
    if (points > m_points)
        return left;
    m_points -= points;
    if (!end.fill.isEmpty()) {
        Path mapped = end.fill;
        mapped.transform(map);
        fill.append(mapped);
    }
    if (!end.line.isEmpty()) {
        Path mapped = end.line;
        mapped.transform(map);
        lines.emplace_back(end, std::move(mapped));
    }
    return left;
}

void Graphics::StrokeParts::addOpen(const Path &figure, const LineEnd &start, const LineEnd &end)
{
    const Path first = cut(figure, end);
    // A line that is too short for both ends keeps them.
    const Path left = reversed(cut(reversed(first.isEmpty() ? figure : first), start));
    if (!first.isEmpty())
        body.append(left);
}

bool Graphics::StrokeParts::add(const Path &figure, const std::vector<double> &dashes,
                                double offset, double tolerance, size_t &most)
{
    const LineEnd none;
    LineEnd inner = m_dash;
    if (isRound)
        inner.fill.clear();
    const LineEnd &start = isRound ? none : m_start, &end = isRound ? none : m_end;
    if (dashes.empty()) {
        if (isClosed(figure)) {
            body.append(figure);
        } else {
            addOpen(figure, start, end);
            startInset = start.inset * m_width;
        }
        return true;
    }
    const auto flat = figure.flattened(tolerance, limits::kPointsUsedAgain);
    const auto pieces = flat ? dashed(*flat, dashes, offset, most) : std::nullopt;
    if (!pieces)
        return false;
    most -= pieces->size();
    const bool isRing = isClosed(figure);
    for (const DashedLine &piece : *pieces)
        addOpen(piece.line, piece.isAtStart && !isRing ? start : inner,
                piece.isAtEnd && !isRing ? end : inner);
    return true;
}

Played Graphics::strokeParts(const plus::Pen &pen, const Tip &tip, const Figure &figure,
                             const Path &inWorld, bool isMesh)
{
    const Affine toNode = m_state.toPicture.then(tip.shape.inverse().value_or(Affine()));
    const double tolerance = m_device.unitsPerPixel / 50;
    Path path = inWorld;
    path.transform(toNode);
    Stroke stroke = strokeOf(pen, tip, &inWorld);
    const auto *const gradient = std::get_if<plus::PathGradientBrush>(&pen.brush);
    const bool cutsDashes =
            !stroke.dashes.empty() && (pen.dashCap != plus::DashCap::Flat || isMesh);
    const std::vector<double> dashes = cutsDashes ? stroke.dashes : std::vector<double>();
    StrokeParts parts(pen, tip.width, m_device.unitsPerPixel, m_left.pointsUsedAgain);
    for (const Path &one : figuresOf(path)) {
        if (!spend(dashes.size())
            || !parts.add(one, dashes, stroke.dashOffset, tolerance, m_left.dashes))
            return notDone("its line has too many dashes");
    }
    Node node = newNode();
    const bool isInset = pen.alignment == plus::PenAlignment::Inset;
    if (isInset && std::ranges::count(path.verbs(), Path::Verb::Close) > 0) {
        node.clip = clipTo(figure);
        stroke.width *= 2;
    }
    if (isMesh)
        return fillStroke(*gradient, parts, stroke, tip);
    if (cutsDashes)
        stroke.dashes.clear();
    else if (!stroke.dashes.empty())
        stroke.dashOffset += parts.startInset;
    stroke.cap = parts.isRound ? Cap::Round : Cap::Butt;
    node.transform = m_builder.transform(tip.shape);
    const bool isWhole = addBody(node, pen, parts.body, stroke);
    if (!parts.fill.isEmpty()) {
        Node ends = node;
        ends.isEvenOdd = false;
        ends.fill = m_builder.paint(stroke.paint);
        m_builder.add(ends, parts.fill);
    }
    stroke.dashes.clear();
    stroke.dashOffset = 0;
    for (const auto &[end, line] : parts.lines) {
        stroke.cap = end.lineCap;
        stroke.join = end.lineJoin;
        stroke.miterLimit = end.lineMiterLimit;
        node.stroke = m_builder.stroke(stroke);
        m_builder.add(node, line);
    }
    return isWhole ? kDone : approximated("its line has too many stripes");
}

// The line itself, or the stripes that it is made of, as many as may be.
bool Graphics::addBody(Node node, const plus::Pen &pen, const Path &body, const Stroke &whole)
{
    constexpr size_t kNodeWork = 16; // what a node takes beside its points
    if (body.isEmpty())
        return true;
    if (pen.stripes.empty()) {
        node.stroke = m_builder.stroke(whole);
        m_builder.add(node, body);
        return true;
    }
    const std::vector<Path> figures = figuresOf(body);
    for (size_t i = 0; i + 1 < pen.stripes.size(); i += 2) {
        const double from = pen.stripes[i], to = pen.stripes[i + 1];
        if (!spend(kNodeWork + body.points().size() + whole.dashes.size()))
            return false;
        Path stripe;
        for (const Path &figure : figures)
            stripe.append(beside(figure, ((from + to) / 2 - 0.5) * whole.width));
        Stroke stroke = whole;
        stroke.width = (to - from) * whole.width;
        node.stroke = m_builder.stroke(stroke);
        m_builder.add(node, stripe);
    }
    return true;
}

// A stroke of a brush that is no paint of a stroke: its outline is filled.
Played Graphics::fillStroke(const plus::PathGradientBrush &brush, const StrokeParts &parts,
                            const Stroke &stroke, const Tip &tip)
{
    const auto lines = parts.body.flattened(m_device.unitsPerPixel / 50, limits::kPointsUsedAgain);
    const auto back = m_state.toPicture.inverse();
    if (!lines || !back)
        return notDone("its line has too many points");
    constexpr size_t kPointsOfLine = 16; // with what is left for the filling
    m_left.pointsOfOutlines -=
            std::min(m_left.pointsOfOutlines, kPointsOfLine * lines->points().size());
    Path outline = outlineOf(*lines,
                             { stroke.width, parts.isRound ? Cap::Round : Cap::Butt, stroke.join,
                               stroke.miterLimit });
    outline.append(parts.fill);
    outline.transform(tip.shape.then(*back));
    return fillPathGradient(brush, pathFigure(std::move(outline), false));
}

} // namespace svgtool::picture
