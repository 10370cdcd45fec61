#include "picture/gdiplus/Brushes.h"
#include "picture/gdiplus/Graphics.h"
#include "picture/gdiplus/LineEnds.h"

#include "core/geometry/Lines.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

static constexpr Played kFlat =
        approximated("its gradient has too many parts, and is drawn in one colour");

// Widths below this many pixels show no caps.
static constexpr double kThin = 1.5;

// Lengths of dashes and gaps, in widths.
static std::vector<double> dashesOf(const plus::Pen &pen)
{
    switch (pen.dashStyle) {
    case plus::DashStyle::Solid:
        break;
    case plus::DashStyle::Dash:
        return { 3, 1 };
    case plus::DashStyle::Dot:
        return { 1, 1 };
    case plus::DashStyle::DashDot:
        return { 3, 1, 1, 1 };
    case plus::DashStyle::DashDotDot:
        return { 3, 1, 1, 1, 1, 1 };
    case plus::DashStyle::Custom:
        return pen.dashes;
    }
    return {};
}

Graphics::Tip Graphics::tipOf(const plus::Pen &pen) const
{
    const double pixel = m_device.unitsPerPixel;
    const PointD unit = pixelsOf(pen.unit);
    const bool isWorld = pen.unit == plus::Unit::World;
    const Affine map = pen.transform.then(
            isWorld ? m_state.toPicture : Affine::scale(unit.x, unit.y).then(m_device.toPicture));
    const Stretch stretch = stretchOf(map);
    const double most = pen.width * stretch.most;
    const double least = std::fmax(pen.width * stretch.least, pixel);
    Tip tip;
    if (!(most > least)) {
        tip.width = std::isfinite(least) ? least : pixel;
    } else if (most - least > std::fmax(pixel / 4, most / 500)) {
        tip.shape = squeezed(stretch.along, least / most);
        tip.width = most;
    } else {
        tip.width = std::sqrt(most * least);
    }
    tip.isThin = least < kThin * pixel;
    return tip;
}

Stroke Graphics::strokeOf(const plus::Pen &pen, const Tip &tip, const Path *figure)
{
    Stroke stroke;
    stroke.width = tip.width;
    stroke.join = joinOf(pen.join);
    stroke.miterLimit = pen.miterLimit;
    const Affine toNode = m_state.toPicture.then(tip.shape.inverse().value_or(Affine()));
    stroke.paint = paintOf(pen.brush, toNode, figure);
    for (const double dash : dashesOf(pen))
        stroke.dashes.push_back(dash * tip.width);
    if (!stroke.dashes.empty())
        stroke.dashOffset = pen.dashOffset * tip.width;
    return stroke;
}

// Round ends reach out of what is left of the dashes.
static void shortenDashes(Stroke &stroke)
{
    constexpr double kDot = 0.01; // widths: of dots without a length some viewers leave out a few
    if (stroke.dashes.size() % 2 != 0) {
        const std::vector<double> once = stroke.dashes;
        stroke.dashes.insert(stroke.dashes.end(), once.begin(), once.end());
    }
    for (size_t i = 0; i < stroke.dashes.size(); i += 2) {
        const double dash = std::fmax(stroke.dashes[i] - stroke.width, kDot * stroke.width);
        stroke.dashes[i + 1] += stroke.dashes[i] - dash;
        stroke.dashes[i] = dash;
    }
    stroke.dashOffset -= stroke.width / 2;
}

// The cap that a stroke has at all its ends, if there is one.
static std::optional<Cap> commonCap(const plus::Pen &pen, bool isThin, bool hasEnds)
{
    using plus::LineCap;
    const bool isDashed = pen.dashStyle != plus::DashStyle::Solid;
    const auto dash = plainCap(pen.dashCap);
    if (hasEnds && (pen.customStartCap || pen.customEndCap))
        return std::nullopt;
    const bool hasAnchor = pen.startCap > LineCap::NoAnchor || pen.endCap > LineCap::NoAnchor;
    if (isThin && !(hasEnds && hasAnchor))
        return Cap::Butt;
    if (!hasEnds)
        return isDashed ? dash : Cap::Butt;
    const auto start = plainCap(pen.startCap), end = plainCap(pen.endCap);
    if (start != end || (isDashed && (start != Cap::Butt || dash != Cap::Butt)))
        return std::nullopt;
    return start;
}

// What a pen has many of, and every line of it needs.
static size_t partsOf(const plus::Pen &pen)
{
    size_t parts = pen.dashes.size() + pen.stripes.size();
    for (const auto &cap : { pen.customStartCap, pen.customEndCap }) {
        const auto *const figures = cap ? std::get_if<plus::PathCap>(cap.get()) : nullptr;
        if (figures == nullptr)
            continue;
        for (const auto &figure : { &figures->fill, &figures->line })
            parts += *figure ? (*figure)->outline.points().size() : 0;
    }
    return parts;
}

Played Graphics::stroke(const plus::Pen &pen, const Figure &figure)
{
    if (isClippedAway())
        return kDone;
    if (!hasStops(pen.brush) || !spend(partsOf(pen)))
        return notDone("its pen has been used too often");
    const auto *const solid = std::get_if<plus::SolidBrush>(&pen.brush);
    if (solid != nullptr && colorOf(solid->color).alpha == 0)
        return kDone;
    const Tip tip = tipOf(pen);
    const Path path = pathOf(figure);
    const auto verbs = path.verbs();
    const bool hasEnds = std::ranges::count(verbs, Path::Verb::Move)
            != std::ranges::count(verbs, Path::Verb::Close);
    const auto *const gradient = std::get_if<plus::PathGradientBrush>(&pen.brush);
    const bool isFilled = gradient != nullptr && !radialPaint(*gradient, Affine());
    const bool isMesh = isFilled && m_left.pointsOfOutlines > 0;
    const auto cap = commonCap(pen, tip.isThin, hasEnds);
    if (!cap || isMesh || !pen.stripes.empty()) {
        const Played played = strokeParts(pen, tip, figure, path, isMesh);
        return played.isDone() && isFilled && !isMesh ? kFlat : played;
    }
    Node node = newNode();
    Stroke stroke = strokeOf(pen, tip, &path);
    stroke.cap = *cap;
    if (*cap == Cap::Round && !stroke.dashes.empty())
        shortenDashes(stroke);
    if (pen.alignment == plus::PenAlignment::Inset && !hasEnds) {
        node.clip = clipTo(figure);
        stroke.width *= 2;
    }
    node.stroke = m_builder.stroke(stroke);
    node.transform = m_builder.transform(tip.shape);
    // Dashes begin where a viewer begins a box or an ellipse, unless they are turned round.
    const Affine &map = m_state.toPicture;
    const bool isUpright = map.a > 0 && map.d > 0;
    if (node.transform == kNone && (stroke.dashes.empty() || isUpright))
        addFigure(node, figure);
    else
        m_builder.add(node, path, map.then(tip.shape.inverse().value_or(Affine())));
    return isFilled ? kFlat : kDone;
}

} // namespace svgtool::picture
