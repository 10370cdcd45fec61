#include "picture/scene/Extents.h"
#include "picture/scene/Passes.h"

#include <algorithm>
#include <cmath>

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
