#include "picture/scene/Grounds.h"

#include "core/base/Limits.h"
#include "picture/scene/Extents.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    constexpr Color kPaper{ 255, 255, 255, 255 };

    // The rectangle that a node is, if it is one.
    std::optional<RectD> plainRect(const Scene &scene, const Node &node)
    {
        if (node.transform != kNone)
            return std::nullopt;
        if (node.kind == Node::Kind::Rect) {
            const Rect &rect = scene.rects[node.geometry];
            return rect.rx == 0 && rect.ry == 0 ? std::optional(rect.box) : std::nullopt;
        }
        if (node.kind == Node::Kind::Image)
            return scene.imagePlaces[node.geometry].box;
        if (node.kind != Node::Kind::Path)
            return std::nullopt;
        const auto verbs = scene.verbsOf(node);
        if (verbs.empty() || verbs.back() != Path::Verb::Close)
            return std::nullopt; // its stroke is no frame
        return rectOf(verbs, scene.pointsOf(node));
    }

    constexpr Paint solid(Color color)
    {
        return { Paint::Kind::Solid, color, kNone };
    }

    bool isOpaque(Color color)
    {
        return color.alpha == 255;
    }

    bool isOpaque(const Bitmap &pixels)
    {
        const auto &colors = pixels.colours();
        return !pixels.isNull() && pixels.format() != PixelFormat::Bgra32
                && std::all_of(colors.begin(), colors.end(),
                               [](Argb color) { return svgtool::isOpaque(color); });
    }

    // A paint, if it hides what it is painted on.
    std::optional<Paint> opaque(const Scene &scene, const Paint &paint)
    {
        bool isIt = false;
        if (paint.kind == Paint::Kind::Solid) {
            isIt = isOpaque(paint.color);
        } else if (paint.kind == Paint::Kind::Hatch) {
            const Hatch &hatch = scene.hatches[paint.resource];
            isIt = isOpaque(hatch.color) && hatch.ground && isOpaque(*hatch.ground);
        } else if (paint.kind == Paint::Kind::Pattern) {
            const Pattern &tiles = scene.patterns[paint.resource];
            isIt = isOpaque(scene.images[tiles.image].pixels) && tiles.transform.isIdentity()
                    && !tiles.mirrorsX && !tiles.mirrorsY && !tiles.isSmooth;
        }
        return isIt ? std::optional(paint) : std::nullopt;
    }

    // What fills the box of a node: of an image, a tile of just that place.
    std::optional<Paint> filling(SceneBuilder &builder, const Node &node)
    {
        const Scene &scene = builder.scene();
        if (node.kind != Node::Kind::Image)
            return opaque(scene, scene.paints[node.fill]);
        const ImagePlace &place = scene.imagePlaces[node.geometry];
        if (!isOpaque(scene.images[place.image].pixels))
            return std::nullopt;
        Pattern tile;
        tile.image = place.image;
        tile.tile = place.box;
        return Paint{ Paint::Kind::Pattern, {}, builder.pattern(tile) };
    }

    // Parents come before their children. A file may make chains of any length of them.
    bool isInside(const Scene &scene, Index clip, Index outer, int64_t &steps)
    {
        if (outer == kNone)
            return true;
        for (; clip != kNone && clip > outer; --steps)
            clip = scene.clips[clip].parent;
        return clip == outer;
    }

    // An area from which parts are taken.
    class Rest
    {
    public:
        explicit Rest(const RectD &area) : m_rects{ area } { }

        bool isEmpty() const { return m_rects.empty(); }
        bool touches(const RectD &box) const
        {
            return std::any_of(m_rects.begin(), m_rects.end(), [&box](const RectD &rect) {
                return !intersection(rect, box).isEmpty();
            });
        }
        void take(const RectD &box, const std::optional<Paint> &paint, std::vector<Ground> &to)
        {
            std::vector<RectD> rest;
            for (const RectD &rect : m_rects) {
                const RectD part = intersection(rect, box);
                if (part.isEmpty()) {
                    rest.push_back(rect);
                    continue;
                }
                put(part, paint, to);
                for (const RectD &around :
                     { RectD{ rect.left, rect.top, rect.right, part.top },
                       RectD{ rect.left, part.bottom, rect.right, rect.bottom },
                       RectD{ rect.left, part.top, part.left, part.bottom },
                       RectD{ part.right, part.top, rect.right, part.bottom } }) {
                    if (!around.isEmpty())
                        rest.push_back(around);
                }
            }
            m_rects = std::move(rest);
        }
        size_t parts() const { return m_rects.size() + m_taken; }

    private:
        void put(const RectD &part, const std::optional<Paint> &paint, std::vector<Ground> &to)
        {
            auto known = std::find_if(to.begin(), to.end(), [&paint](const Ground &ground) {
                return ground.paint == paint;
            });
            if (known == to.end())
                known = to.insert(to.end(), Ground{ paint, {} });
            known->rects.push_back(part);
            ++m_taken;
        }

        std::vector<RectD> m_rects;
        size_t m_taken = 0;
    };

    // Takes from the rest what a node has painted of it.
    void takeNode(SceneBuilder &builder, const Node &node, const RectD &bounds, Index clip,
                  Rest &rest, std::vector<Ground> &to)
    {
        const Scene &scene = builder.scene();
        if (isTakenBack(node))
            return;
        const bool coversAll = node.blend == Blend::Normal && node.opacity == 1
                && isInside(scene, clip, node.clip, builder.allowances().groundSteps);
        const auto rect = coversAll ? plainRect(scene, node) : std::nullopt;
        if (!rect)
            return rest.take(bounds, std::nullopt, to);
        RectD inner = *rect, outer = *rect;
        std::optional<Paint> frame;
        if (node.stroke != kNone) {
            const Stroke &stroke = scene.strokes[node.stroke];
            inner = grown(*rect, -stroke.width / 2);
            outer = grown(*rect, stroke.width / 2);
            const bool isWhole = stroke.dashes.empty() && stroke.join == Join::Miter;
            frame = isWhole ? opaque(scene, stroke.paint) : std::nullopt;
        }
        if (node.fill != kNone || node.kind == Node::Kind::Image) {
            rest.take(inner, filling(builder, node), to);
            return rest.take(outer, frame, to);
        }
        rest.take({ outer.left, outer.top, outer.right, inner.top }, frame, to);
        rest.take({ outer.left, inner.bottom, outer.right, outer.bottom }, frame, to);
        rest.take({ outer.left, inner.top, inner.left, inner.bottom }, frame, to);
        rest.take({ inner.right, inner.top, outer.right, inner.bottom }, frame, to);
    }

} // namespace

const RectD &Grounds::boundsOfNode(const Scene &scene, size_t node)
{
    while (m_bounds.size() <= node)
        m_bounds.push_back(paintedBounds(scene, scene.nodes[m_bounds.size()]));
    return m_bounds[node];
}

void Grounds::forget(size_t node)
{
    m_bounds.resize(std::min(m_bounds.size(), node));
}

std::vector<Ground> Grounds::under(SceneBuilder &builder, const RectD &area, Index clip)
{
    const Scene &scene = builder.scene();
    std::vector<Ground> grounds;
    Rest rest(area);
    for (size_t i = scene.nodes.size(); i > 0 && !rest.isEmpty(); --i) {
        if (--builder.allowances().groundSteps < 0 || rest.parts() > limits::kGroundParts)
            return { Ground{ std::nullopt, { area } } };
        const RectD &bounds = boundsOfNode(scene, i - 1);
        if (rest.touches(bounds))
            takeNode(builder, scene.nodes[i - 1], bounds, clip, rest, grounds);
    }
    rest.take(area, solid(kPaper), grounds);
    return grounds;
}

void layPaper(Scene &scene)
{
    const auto first = std::find_if(scene.nodes.begin(), scene.nodes.end(),
                                    [](const Node &node) { return node.blend != Blend::Normal; });
    if (first == scene.nodes.end())
        return;
    const Paint white = solid(kPaper);
    const auto known = std::find(scene.paints.begin(), scene.paints.end(), white);
    Node paper;
    paper.kind = Node::Kind::Rect;
    paper.geometry = Index(scene.rects.size());
    paper.fill = Index(known - scene.paints.begin());
    if (known == scene.paints.end())
        scene.paints.push_back(white);
    scene.rects.push_back({ scene.view, 0, 0 });
    scene.nodes.insert(scene.nodes.begin(), paper);
}

} // namespace svgtool::picture
