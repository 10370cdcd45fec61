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
        if (node.kind != Node::Kind::Path)
            return std::nullopt;
        const auto p = scene.pointsOf(node);
        const auto verbs = scene.verbsOf(node);
        const auto lines = std::count(verbs.begin(), verbs.end(), Path::Verb::Line);
        if (verbs.empty() || verbs.back() != Path::Verb::Close || verbs.size() != p.size() + 1
            || size_t(lines) + 1 != p.size() || (p.size() != 4 && !(p.size() == 5 && p[4] == p[0])))
            return std::nullopt;
        const bool isFlatFirst =
                p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x;
        const bool isSteepFirst =
                p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y;
        if (!isFlatFirst && !isSteepFirst)
            return std::nullopt;
        return boundsOf(p);
    }

    std::optional<Color> solid(const Paint &paint)
    {
        if (paint.kind != Paint::Kind::Solid || paint.color.alpha != 255)
            return std::nullopt;
        return paint.color;
    }

    bool isInside(const Scene &scene, Index clip, Index outer)
    {
        while (clip != outer && clip != kNone)
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
        void take(const RectD &box, const std::optional<Color> &color, std::vector<Ground> &to)
        {
            std::vector<RectD> rest;
            for (const RectD &rect : m_rects) {
                const RectD part = intersection(rect, box);
                if (part.isEmpty()) {
                    rest.push_back(rect);
                    continue;
                }
                put(part, color, to);
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
        void put(const RectD &part, const std::optional<Color> &color, std::vector<Ground> &to)
        {
            auto known = std::find_if(to.begin(), to.end(), [&color](const Ground &ground) {
                return ground.color == color;
            });
            if (known == to.end())
                known = to.insert(to.end(), Ground{ color, {} });
            known->rects.push_back(part);
            ++m_taken;
        }

        std::vector<RectD> m_rects;
        size_t m_taken = 0;
    };

    // Takes from the rest what a node has painted of it.
    void takeNode(const Scene &scene, const Node &node, const RectD &bounds, Index clip, Rest &rest,
                  std::vector<Ground> &to)
    {
        const bool coversAll = node.blend == Blend::Normal && node.opacity == 1
                && isInside(scene, clip, node.clip);
        const auto rect = coversAll ? plainRect(scene, node) : std::nullopt;
        if (!rect)
            return rest.take(bounds, std::nullopt, to);
        RectD inner = *rect, outer = *rect;
        std::optional<Color> frame;
        if (node.stroke != kNone) {
            const Stroke &stroke = scene.strokes[node.stroke];
            inner = grown(*rect, -stroke.width / 2);
            outer = grown(*rect, stroke.width / 2);
            const bool isWhole = stroke.dashes.empty() && stroke.join == Join::Miter;
            frame = isWhole ? solid(stroke.paint) : std::nullopt;
        }
        if (node.fill != kNone) {
            rest.take(inner, solid(scene.paints[node.fill]), to);
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

std::vector<Ground> Grounds::under(const Scene &scene, const RectD &area, Index clip)
{
    std::vector<Ground> grounds;
    Rest rest(area);
    for (size_t i = scene.nodes.size(); i > 0 && !rest.isEmpty(); --i) {
        if (++m_steps > limits::kGroundSteps || rest.parts() > limits::kGroundParts)
            return { Ground{ std::nullopt, { area } } };
        const RectD &bounds = boundsOfNode(scene, i - 1);
        if (rest.touches(bounds))
            takeNode(scene, scene.nodes[i - 1], bounds, clip, rest, grounds);
    }
    rest.take(area, kPaper, grounds);
    return grounds;
}

void layPaper(Scene &scene)
{
    const auto first = std::find_if(scene.nodes.begin(), scene.nodes.end(),
                                    [](const Node &node) { return node.blend != Blend::Normal; });
    if (first == scene.nodes.end())
        return;
    const Paint white{ Paint::Kind::Solid, kPaper, kNone };
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
