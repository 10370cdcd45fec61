#include "picture/scene/Passes.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    RectD boundsOf(std::span<const PointD> points)
    {
        RectD box{ points[0].x, points[0].y, points[0].x, points[0].y };
        for (const PointD &point : points)
            box = { std::fmin(box.left, point.x), std::fmin(box.top, point.y),
                    std::fmax(box.right, point.x), std::fmax(box.bottom, point.y) };
        return box;
    }

    RectD grown(const RectD &box, double by)
    {
        return { box.left - by, box.top - by, box.right + by, box.bottom + by };
    }

    // What a clip lets through at most, for each one. A clip comes after its parent.
    std::vector<RectD> clipBounds(const Scene &scene)
    {
        std::vector<RectD> boxes;
        boxes.reserve(scene.clips.size());
        for (const Clip &clip : scene.clips) {
            const RectD own = clip.path.bounds();
            const RectD &outer = clip.parent < boxes.size() ? boxes[clip.parent] : scene.view;
            boxes.push_back(intersection(outer, own));
        }
        return boxes;
    }

    bool isBlank(const Scene &scene, const Text &text)
    {
        const FontStyle &font = scene.fonts[text.font];
        return !font.isUnderlined && !font.isStruckOut
                && std::ranges::all_of(text.characters, [](char16_t unit) {
                       constexpr char16_t kNoBreakSpace = 0xA0;
                       return unit <= u' ' || unit == kNoBreakSpace;
                   });
    }

    // How far a stroke reaches beyond its line.
    double reachOf(const Stroke &stroke)
    {
        constexpr double kDiagonal = 1.4143; // of square caps
        return stroke.width / 2
                * (stroke.join == Join::Miter ? std::fmax(stroke.miterLimit, kDiagonal)
                                              : kDiagonal);
    }

    // The box around what a node paints, in its own units; an area without width is there for its
    // stroke only.
    RectD inkOf(const Scene &scene, const Node &node)
    {
        RectD box;
        switch (node.kind) {
        case Node::Kind::Path:
            box = boundsOf(scene.pointsOf(node));
            break;
        case Node::Kind::Rect:
            box = scene.rects[node.geometry].box;
            break;
        case Node::Kind::Ellipse: {
            const auto &[center, radii] = scene.ellipses[node.geometry];
            box = { center.x - radii.x, center.y - radii.y, center.x + radii.x,
                    center.y + radii.y };
            break;
        }
        case Node::Kind::Text: {
            const Text &text = scene.texts[node.geometry];
            return grown({ text.baseline.x, text.baseline.y, text.baseline.x, text.baseline.y },
                         reachOf(scene, text));
        }
        case Node::Kind::Image:
            return scene.imagePlaces[node.geometry].box;
        }
        return node.stroke != kNone ? grown(box, reachOf(scene.strokes[node.stroke])) : box;
    }

    bool isSeen(const Scene &scene, const Node &node, const RectD &window)
    {
        const bool isPainted =
                node.fill != kNone || node.stroke != kNone || node.kind == Node::Kind::Image;
        if (!(node.opacity > 0) || !isPainted || window.isEmpty())
            return false;
        if (node.kind == Node::Kind::Text && isBlank(scene, scene.texts[node.geometry]))
            return false;
        if (node.kind == Node::Kind::Path && scene.verbsOf(node).size() < 2)
            return false;
        RectD ink = inkOf(scene, node);
        if (ink.isEmpty())
            return false;
        if (node.transform != kNone)
            ink = mapBounds(scene.transforms[node.transform], ink);
        // A viewer may smooth edges into the next pixel.
        return !intersection(grown(ink, scene.view.width() / scene.width), window).isEmpty();
    }

} // namespace

void dropUnseen(Scene &scene)
{
    const std::vector<RectD> windows = clipBounds(scene);
    std::erase_if(scene.nodes, [&](const Node &node) {
        return !isSeen(scene, node, node.clip != kNone ? windows[node.clip] : scene.view);
    });
}

} // namespace svgtool::picture
