#include "picture/scene/Extents.h"
#include "picture/scene/Passes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool::picture {

namespace {

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

    // Where letters stand as a rule, less generous than their reach.
    RectD lettersOf(const Scene &scene, const Text &text)
    {
        constexpr double kDescent = 0.25; // ems
        const double size = scene.fonts[text.font].size;
        const double turn = text.turn * std::numbers::pi / 180;
        const double x = std::cos(turn), y = std::sin(turn);
        return mapBounds({ x, -y, y, x, text.baseline.x, text.baseline.y },
                         { 0, -size, text.width, kDescent * size });
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

    // What a node is sure to paint, more or less: corners, and letters, might reach further.
    RectD closeInkOf(const Scene &scene, const Node &node)
    {
        if (node.kind == Node::Kind::Text)
            return lettersOf(scene, scene.texts[node.geometry]);
        if (node.kind == Node::Kind::Path && node.stroke != kNone)
            return grown(boundsOf(scene.pointsOf(node)), scene.strokes[node.stroke].width / 2);
        return inkOf(scene, node);
    }

    RectD hull(const RectD &a, const RectD &b)
    {
        return { std::fmin(a.left, b.left), std::fmin(a.top, b.top), std::fmax(a.right, b.right),
                 std::fmax(a.bottom, b.bottom) };
    }

} // namespace

RectD drawnBounds(const Scene &scene)
{
    const std::vector<RectD> windows = clipBounds(scene);
    RectD all;
    for (const Node &node : scene.nodes) {
        const RectD &window = node.clip != kNone ? windows[node.clip] : scene.view;
        if (!isSeen(scene, node, window))
            continue;
        RectD ink = closeInkOf(scene, node);
        if (node.transform != kNone)
            ink = mapBounds(scene.transforms[node.transform], ink);
        ink = intersection(ink, window);
        all = all.isEmpty() ? ink : hull(all, ink);
    }
    return all;
}

void dropUnseen(Scene &scene)
{
    const std::vector<RectD> windows = clipBounds(scene);
    std::erase_if(scene.nodes, [&](const Node &node) {
        return !isSeen(scene, node, node.clip != kNone ? windows[node.clip] : scene.view);
    });
}

} // namespace svgtool::picture
