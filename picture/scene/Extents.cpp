#include "picture/scene/Extents.h"

#include <cmath>

namespace svgtool::picture {

namespace {

    constexpr double kDiagonal = 1.4143; // of square caps

    // How far a stroke reaches beyond the box of its shape.
    double reachOf(const Stroke &stroke, Node::Kind kind)
    {
        double longest = 1;
        if (kind == Node::Kind::Path)
            longest = stroke.join == Join::Miter ? std::fmax(stroke.miterLimit, kDiagonal)
                                                 : kDiagonal;
        return stroke.width / 2 * longest;
    }

    RectD boxOf(const Ellipse &ellipse)
    {
        const auto &[center, radii] = ellipse;
        return { center.x - radii.x, center.y - radii.y, center.x + radii.x, center.y + radii.y };
    }

} // namespace

RectD grown(const RectD &box, double by)
{
    return { box.left - by, box.top - by, box.right + by, box.bottom + by };
}

RectD inkOf(const Scene &scene, const Node &node)
{
    RectD box;
    switch (node.kind) {
    case Node::Kind::Path:
        if (!scene.pointsOf(node).empty())
            box = boundsOf(scene.pointsOf(node));
        break;
    case Node::Kind::Rect:
        box = scene.rects[node.geometry].box;
        break;
    case Node::Kind::Ellipse:
        box = boxOf(scene.ellipses[node.geometry]);
        break;
    case Node::Kind::Text: {
        const Text &text = scene.texts[node.geometry];
        return grown({ text.baseline.x, text.baseline.y, text.baseline.x, text.baseline.y },
                     reachOf(scene, text));
    }
    case Node::Kind::Image:
        return scene.imagePlaces[node.geometry].box;
    }
    return node.stroke != kNone ? grown(box, reachOf(scene.strokes[node.stroke], node.kind)) : box;
}

RectD paintedBounds(const Scene &scene, const Node &node)
{
    const RectD ink = inkOf(scene, node);
    return node.transform != kNone ? mapBounds(scene.transforms[node.transform], ink) : ink;
}

Path outlineOf(const Scene &scene, const Node &node)
{
    Path path;
    switch (node.kind) {
    case Node::Kind::Path:
        return pathOf(scene.verbsOf(node), scene.pointsOf(node));
    case Node::Kind::Rect: // whose round corners are no matter here
        path.addRect(scene.rects[node.geometry].box);
        break;
    case Node::Kind::Ellipse: {
        const auto &[center, radii] = scene.ellipses[node.geometry];
        path.addEllipse({ radii.x, 0, 0, radii.y, center.x, center.y });
        break;
    }
    case Node::Kind::Image:
        path.addRect(scene.imagePlaces[node.geometry].box);
        break;
    case Node::Kind::Text:
        break;
    }
    return path;
}

Path pathOf(std::span<const Path::Verb> verbs, std::span<const PointD> points)
{
    Path path;
    size_t next = 0;
    for (const Path::Verb verb : verbs) {
        switch (verb) {
        case Path::Verb::Move:
            path.moveTo(points[next++]);
            break;
        case Path::Verb::Line:
            path.lineTo(points[next++]);
            break;
        case Path::Verb::Curve:
            path.curveTo(points[next], points[next + 1], points[next + 2]);
            next += 3;
            break;
        case Path::Verb::Close:
            path.close();
            break;
        }
    }
    return path;
}

} // namespace svgtool::picture
