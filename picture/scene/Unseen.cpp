#include "picture/scene/Extents.h"
#include "picture/scene/Passes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

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

    // The clip's path, if it is a rectangle.
    std::optional<RectD> rectangleOf(const Clip &clip)
    {
        using Verb = Path::Verb;
        static constexpr Verb kVerbs[] = { Verb::Move, Verb::Line, Verb::Line, Verb::Line,
                                           Verb::Close };
        if (!std::ranges::equal(clip.path.verbs(), kVerbs))
            return std::nullopt;
        const auto points = clip.path.points();
        for (size_t i = 0; i < 4; ++i) {
            const PointD &corner = points[i], &next = points[(i + 1) % 4];
            const PointD &across = points[(i + 2) % 4];
            const bool isAlong = corner.x == next.x || corner.y == next.y;
            if (!isAlong || corner.x == across.x || corner.y == across.y)
                return std::nullopt;
        }
        return clip.path.bounds();
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

    // Of next to no width as it is turned: where that is written as none, librsvg gives up on the
    // whole document.
    bool isFlat(const Scene &scene, const Node &node)
    {
        const RectD &box = scene.imagePlaces[node.geometry].box;
        const Affine map = node.transform != kNone ? scene.transforms[node.transform] : Affine();
        const double longest = std::fmax(box.width() * map.scaleX(), box.height() * map.scaleY());
        const double area = box.width() * box.height() * std::abs(map.determinant());
        return !(area > longest * scene.view.width() / scene.width / 1000);
    }

    bool isSeen(const Scene &scene, const Node &node, const RectD &window)
    {
        if (!(node.opacity > 0) || isTakenBack(node) || window.isEmpty())
            return false;
        if (node.kind == Node::Kind::Text && isBlank(scene, scene.texts[node.geometry]))
            return false;
        if (node.kind == Node::Kind::Path && scene.verbsOf(node).size() < 2)
            return false;
        if (node.kind == Node::Kind::Image && isFlat(scene, node))
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

void dropClips(Scene &scene)
{
    if (scene.clips.empty())
        return;
    // Outside the view nothing is seen, unless it is shown in a frame of another shape.
    const RectD &view = scene.view;
    const bool isFramed =
            std::abs(view.width() * scene.height / (view.height() * scene.width) - 1) > 1e-6;
    std::vector<RectD> shown(scene.clips.size()); // by each clip, and those within it
    const auto show = [&](Index clip, const RectD &box) {
        const RectD part = isFramed ? box : intersection(box, view);
        if (clip != kNone && !part.isEmpty())
            shown[clip] = shown[clip].isEmpty() ? part : hull(shown[clip], part);
    };
    for (const Node &node : scene.nodes)
        show(node.clip, paintedBounds(scene, node));
    std::vector<bool> isNeeded(scene.clips.size());
    for (Index i = Index(scene.clips.size()); i-- > 0;) {
        // What is left of a clip's parent comes with it.
        const auto box = rectangleOf(scene.clips[i]);
        const bool isIdle = box && box->contains(shown[i]);
        isNeeded[i] = !isIdle;
        show(scene.clips[i].parent,
             isIdle ? shown[i] : intersection(shown[i], scene.clips[i].path.bounds()));
    }
    std::vector<Index> instead(scene.clips.size()); // the next one outwards that is needed
    const auto needed = [&](Index clip) { return clip != kNone ? instead[clip] : kNone; };
    for (Index i = 0; i < scene.clips.size(); ++i) {
        scene.clips[i].parent = needed(scene.clips[i].parent);
        instead[i] = isNeeded[i] ? i : scene.clips[i].parent;
    }
    for (Node &node : scene.nodes)
        node.clip = needed(node.clip);
}

} // namespace svgtool::picture
