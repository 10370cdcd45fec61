#include "picture/gdi/DeviceContext.h"

#include "core/base/Limits.h"
#include "core/base/Numeric.h"
#include "core/raster/Mixture.h"
#include "picture/scene/Extents.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

static constexpr Played kManyGrounds = approximated("what lies beneath it is of many colours");

static Color mixed(const Color &color, RasterOperation operation, const Color &ground)
{
    return colorOf(operation.apply(argbOf(color), 0, argbOf(ground)) | kAlphaBits);
}

// Both are a colour, or the same hatch; what shows through the gaps of an upper one becomes theirs.
std::optional<Paint> DeviceContext::mixedHatch(const Paint &paint, RasterOperation operation,
                                               const Paint &ground)
{
    const Scene &scene = m_builder.scene();
    struct Inks
    {
        Color lines;
        std::optional<Color> gaps;
    };
    const auto partsOf = [&scene](const Paint &of) {
        if (of.kind == Paint::Kind::Solid)
            return Inks{ of.color, of.color };
        const Hatch &hatch = scene.hatches[of.resource];
        return Inks{ hatch.color, hatch.ground };
    };
    const auto above = partsOf(paint), below = partsOf(ground);
    Hatch hatch =
            scene.hatches[paint.kind == Paint::Kind::Hatch ? paint.resource : ground.resource];
    hatch.color = below.lines;
    hatch.ground = below.gaps;
    if (ground.kind == Paint::Kind::Hatch && scene.hatches[ground.resource] != hatch)
        return std::nullopt;
    hatch.color = mixed(above.lines, operation, below.lines);
    if (above.gaps)
        hatch.ground = mixed(*above.gaps, operation, *below.gaps);
    return Paint{ Paint::Kind::Hatch, {}, m_builder.hatch(hatch) };
}

static RectD around(std::span<const RectD> rects)
{
    RectD all = rects.front();
    for (const RectD &rect : rects)
        all = { std::fmin(all.left, rect.left), std::fmin(all.top, rect.top),
                std::fmax(all.right, rect.right), std::fmax(all.bottom, rect.bottom) };
    return all;
}

// Makes of a tile that covers an area no more than that: whole pixels.
static IntRect shrink(RectD &tile, IntSize pixels, const RectD &area)
{
    if (!tile.contains(area))
        return { 0, 0, pixels.width, pixels.height };
    const double x = tile.width() / pixels.width, y = tile.height() / pixels.height;
    const double left = std::floor((area.left - tile.left) / x);
    const double top = std::floor((area.top - tile.top) / y);
    const double right =
            std::clamp(std::ceil((area.right - tile.left) / x), left + 1, double(pixels.width));
    const double bottom =
            std::clamp(std::ceil((area.bottom - tile.top) / y), top + 1, double(pixels.height));
    const PointD corner{ tile.left, tile.top };
    tile = { corner.x + left * x, corner.y + top * y, corner.x + right * x, corner.y + bottom * y };
    return { int32_t(left), int32_t(top), int32_t(right - left), int32_t(bottom - top) };
}

// Both are a colour, or tiles of the same pixels in the same places.
std::optional<Paint> DeviceContext::mixedTile(const Paint &paint, RasterOperation operation,
                                              const Paint &ground, const RectD &area)
{
    const Scene &scene = m_builder.scene();
    const auto tilesOf = [&scene](const Paint &of) {
        return of.kind == Paint::Kind::Pattern ? &scene.patterns[of.resource] : nullptr;
    };
    const Pattern *const above = tilesOf(paint), *const below = tilesOf(ground);
    Pattern tiles = below != nullptr ? *below : *above;
    const Image &image = scene.images[tiles.image];
    if (image.pixels.isNull())
        return std::nullopt;
    if (above != nullptr && below != nullptr) {
        Pattern same = *above;
        same.image = below->image;
        if (same != *below || scene.images[above->image].pixels.size() != image.size)
            return std::nullopt;
    }
    const IntRect part = below != nullptr ? shrink(tiles.tile, image.size, area)
                                          : IntRect{ 0, 0, image.size.width, image.size.height };
    if (!spendPixels({ part.width, part.height }))
        return std::nullopt;
    const auto pixelsOf = [&](const Pattern *pattern) {
        return pattern != nullptr ? scene.images[pattern->image].pixels.cut(part) : Bitmap();
    };
    const Bitmap upper = pixelsOf(above), lower = pixelsOf(below);
    Image result;
    result.size = { part.width, part.height };
    result.pixels = Bitmap(PixelFormat::Bgr32, result.size);
    std::vector<Argb> from(size_t(part.width), argbOf(paint.color));
    std::vector<Argb> to(size_t(part.width), argbOf(ground.color));
    for (int32_t y = 0; y < part.height; ++y) {
        if (above != nullptr)
            upper.readLine(y, from.data());
        if (below != nullptr)
            lower.readLine(y, to.data());
        else
            std::fill(to.begin(), to.end(), argbOf(ground.color));
        for (size_t x = 0; x < to.size(); ++x) {
            if (alphaOf(from[x]) != 0)
                to[x] = operation.apply(from[x], 0, to[x]);
        }
        result.pixels.writeLine(y, to.data());
    }
    if (const auto color = onlyColour(result.pixels))
        return Paint{ Paint::Kind::Solid, colorOf(*color), kNone };
    // Viewers smooth tiles that they enlarge.
    const auto shown = pixelSize(tiles.tile);
    if (shown && shown->width >= part.width && shown->height >= part.height
        && spendPixels(*shown)) {
        result.pixels = resampled(std::move(result.pixels), *shown);
        result.size = *shown;
    }
    tiles.image = m_builder.image(std::move(result));
    return Paint{ Paint::Kind::Pattern, {}, m_builder.pattern(tiles) };
}

// What a paint becomes on a ground that is known; nothing where that cannot be told.
std::optional<Paint> DeviceContext::mixedPaint(const Paint &paint, RasterOperation operation,
                                               const Paint &ground, const RectD &area)
{
    const auto isOne = [&](Paint::Kind kind) { return paint.kind == kind || ground.kind == kind; };
    if (paint.kind == Paint::Kind::Gradient) // which nothing mixes
        return paint;
    if (isOne(Paint::Kind::Hatch) && isOne(Paint::Kind::Pattern))
        return std::nullopt;
    if (isOne(Paint::Kind::Hatch))
        return mixedHatch(paint, operation, ground);
    if (isOne(Paint::Kind::Pattern))
        return mixedTile(paint, operation, ground, area);
    return Paint{ Paint::Kind::Solid, mixed(paint.color, operation, ground.color), kNone };
}

// Gives a node the paints that an operation leaves on a ground.
bool DeviceContext::mixPaints(Node &node, RasterOperation operation, const Paint &ground,
                              const RectD &area)
{
    const Affine shape =
            node.transform != kNone ? m_builder.scene().transforms[node.transform] : Affine();
    const auto paintOf = [&](const Paint &paint) {
        auto result = mixedPaint(paint, operation, ground, area);
        if (result && paint.kind == Paint::Kind::Solid)
            result = unshaped(*result, shape); // tiles have come from the ground
        return result;
    };
    if (node.fill != kNone) {
        const auto fill = paintOf(m_builder.scene().paints[node.fill]);
        if (!fill)
            return false;
        node.fill = m_builder.paint(*fill);
    }
    if (node.stroke != kNone) {
        Stroke stroke = m_builder.scene().strokes[node.stroke];
        const auto paint = paintOf(stroke.paint);
        if (!paint)
            return false;
        stroke.paint = *paint;
        node.stroke = m_builder.stroke(stroke);
    }
    return true;
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

bool DeviceContext::isProvisional(const Played &played) const
{
    return played.why == kManyGrounds.why && isInexact(m_record);
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

// What comes nearest for a paint of many colours.
static Blend blendOf(RasterOperation operation)
{
    return operation == kPatternAnd       ? Blend::Multiply
            : operation == kPatternOr     ? Blend::Screen
            : operation == kPatternInvert ? Blend::Difference
                                          : Blend::Normal;
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
        const std::vector<BlendStep> steps =
                isSolid ? blendsOf(mixture) : std::vector<BlendStep>{ { blendOf(operation), {} } };
        for (const auto &[blend, color] : steps) {
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
    if (!operation.usesDestination()) {
        Node part = node;
        mixPaints(part, operation, Paint(), {});
        add(part);
        return kDone;
    }
    // It is added to be measured.
    const SceneBuilder::Mark mark = m_builder.mark();
    add(node);
    const RectD area = intersection(
            paintedBounds(m_builder.scene(), m_builder.scene().nodes.back()), m_device.view);
    const auto before = sameInversion(node, operation);
    takeBack(mark);
    if (area.isEmpty())
        return kDone;
    const auto grounds = m_grounds.under(m_builder, area, node.clip);
    const auto isKnown = [](const Ground &ground) { return ground.paint.has_value(); };
    if (before && !std::ranges::all_of(grounds, isKnown) && takeInversionBack(*before, add, area))
        return kDone;
    bool isExact = true;
    for (const Ground &ground : grounds) {
        Node part = node;
        if (grounds.size() > 1)
            part.clip = groundClip(node.clip, ground);
        Node painted = part;
        if (ground.paint && mixPaints(painted, operation, *ground.paint, around(ground.rects)))
            add(painted);
        else
            isExact = addBlended(part, add, operation) && isExact;
    }
    noteInversion(node, operation, mark.nodes, isExact);
    return isExact ? kDone : kManyGrounds;
}

void DeviceContext::takeBack(const SceneBuilder::Mark &mark)
{
    const auto first = m_brushesByImage.lower_bound(Index(mark.images));
    for (auto it = first; it != m_brushesByImage.end(); ++it)
        m_brushImages.erase(it->second);
    m_brushesByImage.erase(first, m_brushesByImage.end());
    m_builder.takeBack(mark);
    m_grounds.forget(mark.nodes);
    while (!m_inverted.empty() && m_inverted.back().end > mark.nodes)
        m_inverted.pop_back();
}

// The pixel of a tile that is repeated over a place.
static Argb colourAt(const Scene &scene, const Pattern &tiles, PointD p)
{
    const Bitmap &pixels = scene.images[tiles.image].pixels;
    const auto index = [](double at, double start, double length, int32_t count) {
        const double times = (at - start) / length;
        return std::clamp(truncateToInt32((times - std::floor(times)) * count), 0, count - 1);
    };
    return pixels.colourAt(index(p.x, tiles.tile.left, tiles.tile.width(), pixels.width()),
                           index(p.y, tiles.tile.top, tiles.tile.height(), pixels.height()));
}

// The pixels of a mixture on grounds that are known, each of which has its rectangles.
static Bitmap overGrounds(const Mixture &mixture, const Scene &scene,
                          const std::vector<Ground> &grounds, const Affine &toPicture)
{
    const auto contains = [](const RectD &rect, PointD p) {
        return rect.left <= p.x && p.x < rect.right && rect.top <= p.y && p.y < rect.bottom;
    };
    const Ground *ground = &grounds.front(); // neighbours lie on the same one mostly
    const RectD *rect = &ground->rects.front();
    const auto findGround = [&](PointD p) {
        for (const Ground &other : grounds) {
            const auto found = std::find_if(other.rects.begin(), other.rects.end(),
                                            [&](const RectD &it) { return contains(it, p); });
            if (found != other.rects.end()) {
                ground = &other;
                rect = &*found;
                return;
            }
        }
    };
    return mixture.over([&](int32_t x, int32_t y) {
        const PointD p = toPicture.map({ x + 0.5, y + 0.5 });
        if (!contains(*rect, p))
            findGround(p); // nothing matters outside the picture
        const Paint &paint = *ground->paint;
        return paint.kind == Paint::Kind::Solid
                ? argbOf(paint.color)
                : colourAt(scene, scene.patterns[paint.resource], p);
    });
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
    constexpr size_t kMostDeep = 8;
    if (before.mixture && before.end == mark.nodes && before.isSame(place, visibleClip())
        && before.mixture->depth() < kMostDeep) {
        mark = before.mark;
        takeBack(mark);
        before.mixture->then(std::move(mixture));
        mixture = std::move(*before.mixture);
    }
    const Played played = addMixture(mixture, place);
    m_transferred = { std::move(mixture), place, visibleClip(), mark,
                      m_builder.scene().nodes.size() };
    return played;
}

Played DeviceContext::addMixture(Mixture mixture, const BlitPlace &place)
{
    const Mixture::Kind kind = mixture.kind();
    if (kind.isPlain)
        return paintPixels(mixture.over([](int32_t, int32_t) { return kBlack; }), place, 1);
    const RectD area = intersection(mapBounds(place.transform, place.box), m_device.view);
    const auto grounds = m_grounds.under(m_builder, area, visibleClip());
    if (grounds.empty())
        return kDone; // beside the picture
    const bool isKnown = std::ranges::all_of(grounds, [](const Ground &ground) {
        return ground.paint && ground.paint->kind != Paint::Kind::Hatch;
    });
    if (isKnown && spendOnGrounds(mixture, place, grounds)) {
        const IntSize size = mixture.size();
        const Affine toBox{ place.box.width() / size.width,
                            0,
                            0,
                            place.box.height() / size.height,
                            place.box.left,
                            place.box.top };
        return paintPixels(
                overGrounds(mixture, m_builder.scene(), grounds, toBox.then(place.transform)),
                place, 1);
    }
    addBlendedPixels(mixture, kind, place);
    return kind.isSaturated ? kDone : kManyGrounds;
}

// Gives a mixture as many pixels as the picture has there, where the ground is not of one colour.
// @return false when it is too large for that
bool DeviceContext::spendOnGrounds(Mixture &mixture, const BlitPlace &place,
                                   std::span<const Ground> grounds)
{
    size_t rects = 0;
    for (const Ground &ground : grounds)
        rects += ground.rects.size();
    if (rects == 1 && grounds.front().paint->kind == Paint::Kind::Solid)
        return true;
    if (mixture.pixelCount() > limits::kMixingSteps / int64_t(rects))
        return false;
    const auto shown = pixelSize(place.box);
    if (!shown || !place.transform.isIdentity())
        return true;
    const IntSize finer{ std::max(mixture.size().width, shown->width),
                         std::max(mixture.size().height, shown->height) };
    if (finer == mixture.size())
        return true;
    if (!spendPixels(finer))
        return false;
    mixture.resample(finer);
    return true;
}

void DeviceContext::addBlendedPixels(const Mixture &mixture, const Mixture::Kind &kind,
                                     const BlitPlace &place)
{
    const auto add = [&](Bitmap pixels, Blend blend) {
        const size_t first = m_builder.scene().nodes.size();
        paintPixels(std::move(pixels), place, 1);
        if (m_builder.scene().nodes.size() > first)
            m_builder.scene().nodes.back().blend = blend;
    };
    const auto is = [](const Bitmap &pixels, Argb colour) { return onlyColour(pixels) == colour; };
    Bitmap flip = mixture.flip();
    if (kind.isUnion)
        return add(std::move(flip), Blend::Screen);
    if (Bitmap keep = mixture.keep(); !is(keep, kWhite))
        add(std::move(keep), Blend::Multiply);
    if (!is(flip, kBlack))
        add(std::move(flip), kind.isDisjoint ? Blend::Screen : Blend::Difference);
}

} // namespace svgtool::picture
