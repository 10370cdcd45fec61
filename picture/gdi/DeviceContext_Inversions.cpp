#include "picture/gdi/DeviceContext.h"

#include "core/base/Limits.h"
#include "picture/scene/Extents.h"

#include <algorithm>

// What is mixed twice in a way that undoes itself. Programs without gradients or stencils paint
// some figures by XOR, a shape over them and the same figures by XOR again: what stays is the
// shape, filled with the figures. Where the shape is a figure masked by AND with tiles of black and
// white, the figure stays where they are black: a shadow that shows what lies beneath.

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
    for (size_t i = isOwnInverse(operation) ? m_inverted.size() : 0; i > 0; --i) {
        const Inverted &before = m_inverted[i - 1];
        if (before.operation == operation && before.node.fill == node.fill
            && before.node.stroke == node.stroke && before.node.clip == node.clip
            && isSameFigure(scene, scene.nodes[before.first], scene.nodes.back()))
            return i - 1;
    }
    return std::nullopt;
}

void DeviceContext::noteInversion(const Node &node, RasterOperation operation, size_t first,
                                  bool isExact)
{
    constexpr size_t kMost = 512; // twice as many as a gradient has steps
    const size_t end = m_builder.scene().nodes.size();
    if (first == end || (!isOwnInverse(operation) && operation != kPatternAnd))
        return;
    if (m_inverted.size() == kMost)
        m_inverted.erase(m_inverted.begin(), m_inverted.begin() + kMost / 2);
    m_inverted.push_back({ node, operation, first, end, isExact });
    if (!isExact)
        ++m_inexact[node.record];
}

// Those in [first, end) are taken back, and nothing of them is inexact any more.
void DeviceContext::forgetInversions(size_t first, size_t end)
{
    const auto from = m_inverted.begin() + std::ptrdiff_t(first);
    const auto to = m_inverted.begin() + std::ptrdiff_t(end);
    std::for_each(from, to, [this](const Inverted &it) {
        if (const auto known = m_inexact.find(it.node.record);
            !it.isExact && known != m_inexact.end() && --known->second == 0)
            m_inexact.erase(known);
    });
    m_inverted.erase(from, to);
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
        if (--m_left.inversionSteps < 0)
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

// Whether the latest figure masks one that was mixed before, to a pixel, and nothing else has been
// painted there since.
bool DeviceContext::isMaskOf(size_t number, const RectD &area)
{
    const Scene &scene = m_builder.scene();
    const Inverted &before = m_inverted[number], &mask = m_inverted.back();
    if (number + 2 != m_inverted.size() || mask.operation != kPatternAnd
        || mask.node.stroke != kNone || mask.node.clip != before.node.clip
        || mask.node.transform != before.node.transform)
        return false;
    for (size_t i = before.end; i < scene.nodes.size(); ++i) {
        if (--m_left.inversionSteps < 0)
            return false;
        if ((i < mask.first || i >= mask.end) && !isTakenBack(scene.nodes[i])
            && !intersection(m_grounds.boundsOfNode(scene, i), area).isEmpty())
            return false;
    }
    RectD masked = m_grounds.boundsOfNode(scene, mask.first);
    for (size_t i = mask.first + 1; i < mask.end; ++i) {
        const RectD &part = m_grounds.boundsOfNode(scene, i);
        masked = { std::fmin(masked.left, part.left), std::fmin(masked.top, part.top),
                   std::fmax(masked.right, part.right), std::fmax(masked.bottom, part.bottom) };
    }
    const double pixel = 1.5 * m_device.unitsPerPixel;
    return grown(area, pixel).contains(masked) && grown(masked, pixel).contains(area);
}

// The colour where tiles are black, and nothing where they are white.
std::optional<Paint> DeviceContext::stippled(const Paint &paint, const Paint &mask)
{
    if (paint.kind != Paint::Kind::Solid || mask.kind != Paint::Kind::Pattern)
        return std::nullopt;
    Pattern tiles = m_builder.scene().patterns[mask.resource];
    const Bitmap &pixels = m_builder.scene().images[tiles.image].pixels;
    if (pixels.isNull() || !spendPixels(pixels.size()))
        return std::nullopt;
    Image image;
    image.size = pixels.size();
    image.pixels = Bitmap(PixelFormat::Bgra32, image.size);
    std::vector<Argb> line = pixels.lineBuffer();
    for (int32_t y = 0; y < pixels.height(); ++y) {
        pixels.readLine(y, line.data());
        for (Argb &pixel : line) {
            const Argb bits = pixel & kColourBits;
            if (bits != 0 && bits != kColourBits)
                return std::nullopt;
            pixel = bits == 0 ? argbOf(paint.color) : kClear;
        }
        image.pixels.writeLine(y, line.data());
    }
    tiles.image = m_builder.image(std::move(image));
    return Paint{ Paint::Kind::Pattern, {}, m_builder.pattern(tiles) };
}

bool DeviceContext::stippleInversion(size_t number, const RectD &area)
{
    const Inverted before = m_inverted[number];
    if (before.node.fill == kNone || before.node.stroke != kNone
        || before.operation != kPatternInvert || !isMaskOf(number, area))
        return false;
    const Inverted mask = m_inverted.back();
    Scene &scene = m_builder.scene();
    const auto paint = stippled(scene.paints[before.node.fill], scene.paints[mask.node.fill]);
    if (!paint)
        return false;
    for (size_t i = before.first; i < before.end; ++i)
        scene.nodes[i].fill = scene.nodes[i].stroke = kNone;
    // Where a ground took more than one to be masked, they paint the same.
    for (size_t i = mask.first; i < mask.end; ++i) {
        scene.nodes[i].fill = m_builder.paint(*paint);
        scene.nodes[i].blend = Blend::Normal;
        scene.nodes[i].opacity = 1;
    }
    forgetInversions(number, m_inverted.size());
    return true;
}

// Takes a figure back that was mixed before, and leaves it on the shapes that were painted since.
bool DeviceContext::takeInversionBack(size_t number, const AddNode &add, const RectD &area)
{
    if (stippleInversion(number, area))
        return true;
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
    forgetInversions(number, number + 1);
    std::ranges::for_each(parts, add);
    return true;
}

} // namespace svgtool::picture
