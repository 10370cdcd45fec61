#include "picture/gdi/DeviceContext.h"

#include "core/base/Limits.h"
#include "core/raster/Mixture.h"
#include "picture/scene/Extents.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

static constexpr Played kManyGrounds = approximated("what lies beneath it is of many colours");

// What a paint becomes on a ground of one colour.
Index DeviceContext::mixedPaint(Index index, RasterOperation operation, Color ground)
{
    if (index == kNone)
        return kNone;
    Paint paint = m_builder.scene().paints[index];
    const auto mixed = [&](const Color &color) {
        return colorOf(operation.apply(argbOf(color), 0, argbOf(ground)) | kAlphaBits);
    };
    switch (paint.kind) {
    case Paint::Kind::Solid:
        paint.color = mixed(paint.color);
        break;
    case Paint::Kind::Hatch: {
        Hatch hatch = m_builder.scene().hatches[paint.resource];
        hatch.color = mixed(hatch.color);
        if (hatch.ground)
            hatch.ground = mixed(*hatch.ground);
        paint.resource = m_builder.hatch(hatch);
        break;
    }
    case Paint::Kind::Gradient: // which nothing mixes
        break;
    case Paint::Kind::Pattern: {
        Pattern pattern = m_builder.scene().patterns[paint.resource];
        const Bitmap &pixels = m_builder.scene().images[pattern.image].pixels;
        if (pixels.isNull())
            break;
        // As the source of the operation it gives up its pixels one by one.
        const Mixture mixture(pixels, operation.withPatternAsSource(), 0);
        Image image;
        image.size = pixels.size();
        image.pixels = mixture.over([ground](int32_t, int32_t) { return argbOf(ground); });
        pattern.image = m_builder.image(std::move(image));
        paint.resource = m_builder.pattern(pattern);
        break;
    }
    }
    return m_builder.paint(paint);
}

Index DeviceContext::mixedStroke(Index index, RasterOperation operation, Color ground)
{
    if (index == kNone)
        return kNone;
    Stroke stroke = m_builder.scene().strokes[index];
    const Index paint = mixedPaint(m_builder.paint(stroke.paint), operation, ground);
    stroke.paint = m_builder.scene().paints[paint];
    return m_builder.stroke(stroke);
}

// The same as an operation on a ground of many colours: what of it is kept is multiplied, what is
// flipped then added or turned round. Exact where each channel has all bits or none.
static bool isSaturated(PixelMixture mixture)
{
    const auto all = [](Argb colour) {
        return (colour & kColourBits) == (colour & 0x010101) * 255;
    };
    return all(mixture.keep) && all(mixture.flip & mixture.keep);
}

std::vector<DeviceContext::BlendStep> DeviceContext::blendsOf(PixelMixture mixture)
{
    if (mixture.isOpaque())
        return { { Blend::Normal, mixture.flip } };
    if (mixture.flip != 0 && (mixture.flip ^ mixture.keep) == kColourBits)
        return { { Blend::Screen, mixture.flip } };
    std::vector<BlendStep> steps;
    if (mixture.keep != kColourBits)
        steps.push_back({ Blend::Multiply, mixture.keep });
    if (mixture.flip != 0)
        steps.push_back({ (mixture.flip & mixture.keep) == 0 ? Blend::Screen : Blend::Difference,
                          mixture.flip });
    return steps;
}

// The part of a node where the ground is of one colour.
Index DeviceContext::groundClip(Index clip, const Ground &ground)
{
    Clip part;
    part.parent = clip;
    for (const RectD &rect : ground.rects)
        part.path.addRect(rect);
    return m_builder.clip(part);
}

bool DeviceContext::addBlended(const Node &node, const AddNode &add, RasterOperation operation)
{
    bool isExact = true;
    for (const bool isFill : { true, false }) {
        const Index paint = isFill ? node.fill
                : node.stroke != kNone
                ? m_builder.paint(m_builder.scene().strokes[node.stroke].paint)
                : kNone;
        if (paint == kNone)
            continue;
        const Paint base = m_builder.scene().paints[paint];
        const bool isSolid = base.kind == Paint::Kind::Solid;
        const PixelMixture mixture = mixtureOf(operation, argbOf(base.color), 0);
        isExact = isExact && isSolid && isSaturated(mixture);
        for (const auto &[blend, color] : blendsOf(mixture)) {
            Node part = node;
            part.fill = part.stroke = kNone;
            part.blend = blend;
            Paint solid = base;
            if (isSolid)
                solid.color = colorOf(color | kAlphaBits);
            if (isFill) {
                part.fill = m_builder.paint(solid);
            } else {
                Stroke stroke = m_builder.scene().strokes[node.stroke];
                stroke.paint = solid;
                part.stroke = m_builder.stroke(stroke);
            }
            add(part);
        }
    }
    return isExact;
}

Played DeviceContext::addMixed(const Node &node, const AddNode &add, RasterOperation operation)
{
    if (isHidden() || (node.fill == kNone && node.stroke == kNone) || operation == kNoOperation)
        return kDone;
    if (operation == kPatternCopy) {
        add(node);
        return kDone;
    }
    const auto painted = [&](const Ground &ground, bool isWhole) {
        Node part = node;
        part.fill = mixedPaint(node.fill, operation, *ground.color);
        part.stroke = mixedStroke(node.stroke, operation, *ground.color);
        if (!isWhole)
            part.clip = groundClip(node.clip, ground);
        add(part);
    };
    if (!operation.usesDestination()) {
        painted({ Color(), {} }, true);
        return kDone;
    }
    // It is added to be measured.
    const SceneBuilder::Mark mark = m_builder.mark();
    add(node);
    const RectD area = intersection(
            paintedBounds(m_builder.scene(), m_builder.scene().nodes.back()), m_device.view);
    takeBack(mark);
    if (area.isEmpty())
        return kDone;
    const auto grounds = m_grounds.under(m_builder.scene(), area, node.clip);
    bool isExact = true;
    for (const Ground &ground : grounds) {
        const bool isWhole = grounds.size() == 1;
        if (ground.color) {
            painted(ground, isWhole);
            continue;
        }
        Node part = node;
        if (!isWhole)
            part.clip = groundClip(node.clip, ground);
        isExact = addBlended(part, add, operation) && isExact;
    }
    return isExact ? kDone : kManyGrounds;
}

void DeviceContext::takeBack(const SceneBuilder::Mark &mark)
{
    m_builder.takeBack(mark);
    m_grounds.forget(mark.nodes);
}

// The pixels of a mixture on grounds that are known, each of which has its rectangles.
static Bitmap overGrounds(const Mixture &mixture, const std::vector<Ground> &grounds,
                          const Affine &toPicture)
{
    const auto colourAt = [&](int32_t x, int32_t y) {
        const PointD p = toPicture.map({ x + 0.5, y + 0.5 });
        for (const Ground &ground : grounds) {
            for (const RectD &rect : ground.rects) {
                if (rect.left <= p.x && p.x < rect.right && rect.top <= p.y && p.y < rect.bottom)
                    return argbOf(*ground.color);
            }
        }
        return kWhite; // outside the picture
    };
    if (grounds.size() == 1)
        return mixture.over([&](int32_t, int32_t) { return argbOf(*grounds[0].color); });
    return mixture.over(colourAt);
}

bool DeviceContext::Transferred::isSame(const BlitPlace &other, Index otherClip) const
{
    return clip == otherClip && place.box == other.box && place.transform == other.transform;
}

Played DeviceContext::paintMixture(Mixture mixture, const BlitPlace &place)
{
    // What was transferred to the same place before is one with this: a mask and its picture.
    Transferred before = std::move(m_transferred);
    m_transferred = {};
    SceneBuilder::Mark mark = m_builder.mark();
    if (before.mixture && before.end == mark.nodes && before.isSame(place, visibleClip())) {
        mark = before.mark;
        takeBack(mark);
        before.mixture->then(mixture);
        mixture = std::move(*before.mixture);
    }
    const Played played = addMixture(mixture, place);
    m_transferred = { std::move(mixture), place, visibleClip(), mark,
                      m_builder.scene().nodes.size() };
    return played;
}

Played DeviceContext::addMixture(const Mixture &mixture, const BlitPlace &place)
{
    const auto opaque = [&](Bitmap pixels) {
        if (mixture.isOpaque())
            pixels.dropAlpha();
        return paintPixels(std::move(pixels), place, 1);
    };
    if (mixture.isPlain())
        return opaque(mixture.over([](int32_t, int32_t) { return kBlack; }));
    const IntSize size = mixture.size();
    const Affine toPicture = Affine{ place.box.width() / size.width,
                                     0,
                                     0,
                                     place.box.height() / size.height,
                                     place.box.left,
                                     place.box.top }
                                     .then(place.transform);
    const RectD area = intersection(mapBounds(place.transform, place.box), m_device.view);
    const auto grounds = m_grounds.under(m_builder.scene(), area, visibleClip());
    size_t rects = 0;
    bool isKnown = true;
    for (const Ground &ground : grounds) {
        rects += ground.rects.size();
        isKnown = isKnown && ground.color;
    }
    if (isKnown
        && (grounds.size() == 1
            || mixture.keep().pixelCount() < limits::kMixingSteps / int64_t(rects)))
        return opaque(overGrounds(mixture, grounds, toPicture));
    addBlendedPixels(mixture, place);
    return mixture.isSaturated() ? kDone : kManyGrounds;
}

void DeviceContext::addBlendedPixels(const Mixture &mixture, const BlitPlace &place)
{
    const auto add = [&](const Bitmap &pixels, Blend blend) {
        const size_t first = m_builder.scene().nodes.size();
        paintPixels(pixels, place, 1);
        if (m_builder.scene().nodes.size() > first)
            m_builder.scene().nodes.back().blend = blend;
    };
    const auto is = [](const Bitmap &pixels, Argb colour) { return onlyColour(pixels) == colour; };
    if (mixture.isUnion())
        return add(mixture.flip(), Blend::Screen);
    if (!is(mixture.keep(), kWhite))
        add(mixture.keep(), Blend::Multiply);
    if (!is(mixture.flip(), kBlack))
        add(mixture.flip(), mixture.isDisjoint() ? Blend::Screen : Blend::Difference);
}

} // namespace svgtool::picture
