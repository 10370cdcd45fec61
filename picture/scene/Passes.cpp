#include "picture/scene/Passes.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace svgtool::picture {

namespace {

    std::span<Path::Verb> verbsOf(Scene &scene, const Node &node)
    {
        const PathRange &range = scene.paths[node.geometry];
        return { scene.verbs.data() + range.firstVerb, range.verbs };
    }

    std::span<PointD> pointsOf(Scene &scene, const Node &node)
    {
        const PathRange &range = scene.paths[node.geometry];
        return { scene.points.data() + range.firstPoint, range.points };
    }

    // A stroke of one figure that is open.
    bool isOpenLine(Scene &scene, const Node &node)
    {
        if (node.kind != Node::Kind::Path || node.fill != kNone || node.stroke == kNone
            || node.isExact)
            return false;
        const auto verbs = verbsOf(scene, node);
        return verbs.size() >= 2 && verbs.back() != Path::Verb::Close
                && std::count(verbs.begin(), verbs.end(), Path::Verb::Move) == 1;
    }

} // namespace

void joinLines(Scene &scene)
{
    // The ranges of a line and of what goes on from it lie side by side, so that the joined one
    // only loses the move between them. What is kept moves down over what is lost.
    auto &nodes = scene.nodes;
    size_t kept = 0; // nodes
    bool canGoOn = false; // the last node of the result is an open line at the end of the blocks
    uint32_t verbsEnd = 0, pointsEnd = 0;
    for (const Node &node : scene.nodes) {
        if (node.kind != Node::Kind::Path) {
            canGoOn = false;
            nodes[kept++] = node;
            continue;
        }
        const bool isLine = isOpenLine(scene, node);
        PathRange &range = scene.paths[node.geometry];
        const bool goesOn = isLine && canGoOn && nodes[kept - 1].stroke == node.stroke
                && nodes[kept - 1].clip == node.clip && nodes[kept - 1].transform == node.transform
                && nodes[kept - 1].group == node.group
                && scene.points[pointsEnd - 1] == scene.points[range.firstPoint];
        const uint32_t lost = goesOn ? 1 : 0;
        if (range.firstVerb + lost != verbsEnd)
            std::copy_n(scene.verbs.begin() + range.firstVerb + lost, range.verbs - lost,
                        scene.verbs.begin() + verbsEnd);
        if (range.firstPoint + lost != pointsEnd)
            std::copy_n(scene.points.begin() + range.firstPoint + lost, range.points - lost,
                        scene.points.begin() + pointsEnd);
        const uint32_t firstVerb = verbsEnd, firstPoint = pointsEnd;
        verbsEnd += range.verbs - lost;
        pointsEnd += range.points - lost;
        if (goesOn) {
            PathRange &whole = scene.paths[nodes[kept - 1].geometry];
            whole.verbs += range.verbs - lost;
            whole.points += range.points - lost;
            // Back where it began, it is a figure without ends.
            if (scene.verbs[verbsEnd - 1] == Path::Verb::Line
                && scene.points[pointsEnd - 1] == scene.points[whole.firstPoint]) {
                scene.verbs[verbsEnd - 1] = Path::Verb::Close;
                --whole.points;
                --pointsEnd;
                canGoOn = false;
            }
            continue;
        }
        range.firstVerb = firstVerb;
        range.firstPoint = firstPoint;
        nodes[kept++] = node;
        canGoOn = isLine;
    }
    nodes.resize(kept);
    scene.verbs.resize(verbsEnd);
    scene.points.resize(pointsEnd);
}

// A step of the given length against the way from one point to the other.
static PointD stepBack(PointD from, PointD to, double length)
{
    const double x = to.x - from.x, y = to.y - from.y;
    const double whole = std::hypot(x, y);
    return whole > 0 ? PointD{ -x / whole * length, -y / whole * length } : PointD();
}

void alignLineEnds(Scene &scene)
{
    if (!(scene.width > 0))
        return;
    const double pixel = scene.view.width() / scene.width;
    for (const Node &node : scene.nodes) {
        if (!isOpenLine(scene, node) || node.transform != kNone)
            continue;
        const Stroke &stroke = scene.strokes[node.stroke];
        const double pixels = std::fmin(stroke.width / pixel, 1e6);
        if (stroke.cap != Cap::Butt || std::lround(pixels) % 2 == 0)
            continue;
        const auto points = pointsOf(scene, node);
        const size_t last = points.size() - 1;
        const PointD start = stepBack(points[0], points[1], pixel / 2);
        const PointD end = stepBack(points[last - 1], points[last], pixel / 2);
        points[0] = { points[0].x + start.x, points[0].y + start.y };
        points[last] = { points[last].x + end.x, points[last].y + end.y };
    }
}

} // namespace svgtool::picture
