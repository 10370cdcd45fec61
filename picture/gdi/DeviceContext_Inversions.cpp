#include "picture/gdi/DeviceContext.h"

#include "core/base/Limits.h"
#include "picture/scene/Extents.h"

#include <algorithm>

// What is mixed twice in a way that undoes itself. Programs without gradients or stencils paint
// some figures by XOR, a shape over them and the same figures by XOR again: what stays is the
// shape, filled with the figures.

namespace svgtool::picture {

static bool isSameFigure(const Scene &scene, const Node &a, const Node &b)
{
    if (a.kind != b.kind || a.isEvenOdd != b.isEvenOdd || a.transform != b.transform)
        return false;
    switch (a.kind) {
    case Node::Kind::Path:
        return std::ranges::equal(scene.verbsOf(a), scene.verbsOf(b))
                && std::ranges::equal(scene.pointsOf(a), scene.pointsOf(b));
    case Node::Kind::Rect: {
        const Rect &first = scene.rects[a.geometry], &second = scene.rects[b.geometry];
        return first.box == second.box && first.rx == second.rx && first.ry == second.ry;
    }
    case Node::Kind::Ellipse: {
        const Ellipse &first = scene.ellipses[a.geometry], &second = scene.ellipses[b.geometry];
        return first.center == second.center && first.radii == second.radii;
    }
    case Node::Kind::Text:
    case Node::Kind::Image:
        break;
    }
    return false;
}

bool DeviceContext::isOwnInverse(RasterOperation operation)
{
    return operation == kPatternInvert || operation == kInversion;
}

// The number of the last figure that was mixed just as the scene's last node is to be.
std::optional<size_t> DeviceContext::sameInversion(const Node &node,
                                                   RasterOperation operation) const
{
    const Scene &scene = m_builder.scene();
    for (size_t i = m_inverted.size(); i > 0; --i) {
        const Inverted &before = m_inverted[i - 1];
        if (before.operation == operation && before.node.fill == node.fill
            && before.node.stroke == node.stroke && before.node.clip == node.clip
            && isSameFigure(scene, scene.nodes[before.first], scene.nodes.back()))
            return i - 1;
    }
    return std::nullopt;
}

void DeviceContext::noteInversion(const Node &node, RasterOperation operation, size_t first)
{
    constexpr size_t kMost = 512; // twice as many as a gradient has steps
    const size_t end = m_builder.scene().nodes.size();
    if (first == end || !isOwnInverse(operation))
        return;
    if (m_inverted.size() == kMost)
        m_inverted.erase(m_inverted.begin(), m_inverted.begin() + kMost / 2);
    m_inverted.push_back({ node, operation, first, end });
}

// The shapes of one colour that were painted over a figure since; nothing where other things were.
std::optional<std::vector<size_t>> DeviceContext::shapesOver(const Inverted &before,
                                                             const RectD &area)
{
    constexpr size_t kMost = 64;
    const Scene &scene = m_builder.scene();
    std::vector<size_t> shapes;
    for (size_t i = before.end; i < scene.nodes.size(); ++i) {
        const Node &node = scene.nodes[i];
        if (--m_inversionSteps < 0)
            return std::nullopt;
        if (isTakenBack(node) || intersection(m_grounds.boundsOfNode(scene, i), area).isEmpty())
            continue;
        const bool isShape = node.kind != Node::Kind::Text && node.kind != Node::Kind::Image
                && node.blend == Blend::Normal && node.opacity == 1 && node.stroke == kNone
                && node.clip == before.node.clip
                && scene.paints[node.fill].kind == Paint::Kind::Solid
                && scene.paints[node.fill].color.alpha == 255;
        if (!isShape || shapes.size() == kMost)
            return std::nullopt;
        shapes.push_back(i);
    }
    return shapes;
}

// Takes a figure back that was mixed before, and leaves it on the shapes that were painted since.
bool DeviceContext::takeInversionBack(size_t number, const AddNode &add, const RectD &area)
{
    const Inverted before = m_inverted[number];
    const auto shapes = shapesOver(before, area);
    if (!shapes)
        return false;
    std::vector<Node> parts;
    for (const size_t shape : *shapes) {
        const Node &over = m_builder.scene().nodes[shape];
        Clip clip{ over.clip, outlineOf(m_builder.scene(), over), over.isEvenOdd };
        if (over.transform != kNone)
            clip.path.transform(m_builder.scene().transforms[over.transform]);
        Node part = before.node;
        if (!spendPoints(clip.path.points().size())
            || !mixPaints(part, before.operation, m_builder.scene().paints[over.fill], area))
            return false;
        part.clip = m_builder.clip(clip);
        parts.push_back(part);
    }
    for (size_t i = before.first; i < before.end; ++i) {
        Node &node = m_builder.scene().nodes[i];
        node.fill = node.stroke = kNone;
    }
    m_inverted.erase(m_inverted.begin() + std::ptrdiff_t(number));
    std::ranges::for_each(parts, add);
    return true;
}

} // namespace svgtool::picture
