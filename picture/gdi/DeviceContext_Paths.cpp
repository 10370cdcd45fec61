#include "core/base/Limits.h"
#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace svgtool::picture {

static constexpr Played kNoPath = notDone("there is no path");
static constexpr Played kTooManyPoints = notDone("its path has too many points");

Played DeviceContext::beginPath()
{
    m_path.clear();
    m_state.path.reset();
    m_isInPath = true;
    return kDone;
}

Played DeviceContext::endPath()
{
    if (!m_isInPath)
        return kNoPath;
    m_isInPath = false;
    m_path.dropMove();
    m_state.path = std::make_shared<GdiPath>();
    m_state.path->path = std::exchange(m_path, {});
    return kDone;
}

Played DeviceContext::closeFigure()
{
    if (!m_isInPath)
        return kNoPath;
    m_path.close();
    // What follows begins where the figure did.
    if (const auto toLogical = m_state.toDevice.inverse(); toLogical && !m_path.isEmpty())
        m_state.current = toLogical->map(m_path.current());
    return kDone;
}

Played DeviceContext::abortPath()
{
    m_isInPath = false;
    m_path.clear();
    m_state.path.reset();
    return kDone;
}

std::shared_ptr<GdiPath> DeviceContext::takePath()
{
    auto path = std::exchange(m_state.path, nullptr);
    if (path && std::exchange(path->wasUsed, true)) {
        const size_t points = path->path.points().size(), left = m_left.pointsUsedAgain;
        m_left.pointsUsedAgain -= std::min(points, left);
        if (points > left)
            return nullptr;
    }
    return path;
}

Played DeviceContext::paintPath(uint8_t parts)
{
    // Without one GDI paints nothing either, so nothing is missing.
    const auto path = takePath();
    if (!path)
        return kNeutral;
    return paint(path->path, parts, !m_state.isWinding && !path->isWidened);
}

Played DeviceContext::fillPath()
{
    return paintPath(kFill);
}

Played DeviceContext::strokePath()
{
    return paintPath(kStroke);
}

Played DeviceContext::strokeAndFillPath()
{
    return paintPath(kFill | kStroke);
}

// What is asked for in vain takes what is left, so that the work is not done again and again.
static constexpr size_t kAllThereAre = std::numeric_limits<size_t>::max();

bool DeviceContext::spendPoints(size_t points)
{
    const size_t left = m_left.pointsOfOutlines;
    m_left.pointsOfOutlines -= std::min(points, left);
    return points <= left;
}

Played DeviceContext::flattenPath()
{
    if (!m_state.path)
        return kNoPath;
    constexpr double kTolerance = 0.1; // of a pixel
    auto lines = m_state.path->path.flattened(kTolerance * m_device.unitsPerPixel,
                                              m_left.pointsOfOutlines);
    if (!spendPoints(lines ? lines->points().size() : kAllThereAre))
        return kTooManyPoints;
    m_state.path =
            std::make_shared<GdiPath>(GdiPath{ std::move(*lines), m_state.path->isWidened, false });
    return kDone;
}

Played DeviceContext::widenPath()
{
    if (!m_state.path)
        return kNoPath;
    if (!hasPen())
        return notDone("the pen draws nothing");
    // An outline has the more points the more lines it goes around, so they are paid for first.
    constexpr size_t kPointsOfLine = 8;
    const size_t left = m_left.pointsOfOutlines;
    if (m_state.path->path.points().size() > left / kPointsOfLine) {
        spendPoints(kAllThereAre);
        return kTooManyPoints;
    }
    const UsedPen &pen = usePen(kStroke, false);
    const Nib &nib = pen.nib;
    const Stroke stroke = m_builder.scene().strokes[pen.stroke];
    const Affine toNib = m_device.toPicture.then(Affine::translation(nib.offset.x, nib.offset.y))
                                 .then(nib.shape.inverse().value_or(Affine()));
    const Affine fromPicture = m_device.toPicture.inverse().value_or(Affine());
    constexpr double kTolerance = 0.05; // of a pixel
    Path placed = m_state.path->path;
    placed.transform(toNib);
    const auto lines = placed.flattened(kTolerance * m_device.unitsPerPixel, left / kPointsOfLine);
    if (!lines) {
        spendPoints(kAllThereAre);
        return kTooManyPoints;
    }
    Path wide = outlineOf(*lines, { stroke.width, stroke.cap, stroke.join, stroke.miterLimit });
    if (!spendPoints(lines->points().size() + wide.points().size()))
        return kTooManyPoints;
    // The middle of the pen is part of the figure now.
    wide.transform(nib.shape.then(fromPicture));
    m_state.path = std::make_shared<GdiPath>(GdiPath{ std::move(wide), true, false });
    return stroke.dashes.empty() ? kDone : approximated("its gaps are covered");
}

} // namespace svgtool::picture
