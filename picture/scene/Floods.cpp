#include "picture/scene/Floods.h"

#include "picture/scene/Extents.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    constexpr Color kPaper{ 255, 255, 255, 255 };

    double distance(PointD p, PointD a, PointD b)
    {
        const PointD line{ b.x - a.x, b.y - a.y };
        const double squared = line.x * line.x + line.y * line.y;
        const double along = (p.x - a.x) * line.x + (p.y - a.y) * line.y;
        const double t = squared > 0 ? std::clamp(along / squared, 0.0, 1.0) : 0;
        return std::hypot(a.x + t * line.x - p.x, a.y + t * line.y - p.y);
    }

    // How a place lies to a path of lines.
    struct Place
    {
        int windings = 0, crossings = 0; // of the figures, closed by a line if need be
        double fromLine = HUGE_VAL; // how far from the next one
        bool isClosed = true; // each figure ends where it began

        bool isInside(bool isEvenOdd) const
        {
            return isEvenOdd ? crossings % 2 != 0 : windings != 0;
        }
    };

    Place placeIn(const Path &lines, PointD p)
    {
        Place place;
        PointD start, at;
        const auto lineTo = [&](PointD to) {
            place.fromLine = std::fmin(place.fromLine, distance(p, at, to));
            if ((at.y <= p.y) != (to.y <= p.y)) {
                const double x = at.x + (p.y - at.y) / (to.y - at.y) * (to.x - at.x);
                place.crossings += x > p.x ? 1 : 0;
                place.windings += x <= p.x ? 0 : to.y > at.y ? 1 : -1;
            }
            at = to;
        };
        const auto end = [&] {
            if (at == start)
                return;
            place.isClosed = false;
            const double fromLine = place.fromLine;
            lineTo(start);
            place.fromLine = fromLine;
        };
        size_t next = 0;
        for (const Path::Verb verb : lines.verbs()) {
            if (verb == Path::Verb::Close) {
                lineTo(start);
                continue;
            }
            const PointD to = lines.points()[next++];
            if (verb == Path::Verb::Move) {
                end();
                start = at = to;
            } else {
                lineTo(to);
            }
        }
        end();
        return place;
    }

    class Search
    {
    public:
        Search(const Scene &scene, const Flood &flood, int64_t &steps)
            : m_scene(scene), m_flood(flood), m_steps(steps), m_tolerance(scene.view.width() / 4096)
        {
        }

        std::optional<Flooded> run()
        {
            for (size_t i = m_scene.nodes.size(); i > 0 && !m_isOver; --i)
                look(Index(i - 1));
            if (m_isOver)
                return m_answer;
            if (m_flood.endsAtColor || m_flood.color == kPaper)
                return figure();
            return kNothing;
        }

    private:
        void finish(std::optional<Flooded> answer)
        {
            m_answer = answer;
            m_isOver = true;
        }
        void look(Index number)
        {
            const Node &node = m_scene.nodes[number];
            const RectD box = paintedBounds(m_scene, node);
            const PointD at = m_flood.at;
            const bool isNear =
                    box.left <= at.x && at.x <= box.right && box.top <= at.y && at.y <= box.bottom;
            if (--m_steps < 0)
                return finish(std::nullopt);
            if (!isNear || node.kind == Node::Kind::Text || !isVisible(node.clip))
                return;
            if (node.kind == Node::Kind::Image || node.blend != Blend::Normal || node.opacity != 1)
                return finish(std::nullopt);
            const Affine map =
                    node.transform != kNone ? m_scene.transforms[node.transform] : Affine();
            const auto back = map.inverse();
            if (back)
                lookAtShape(number, node, back->map(at), box);
        }

        Place placeOf(const Path &path, PointD at)
        {
            const auto lines = path.flattened(m_tolerance, size_t(std::max<int64_t>(m_steps, 0)));
            m_steps -= lines ? int64_t(lines->points().size()) : m_steps + 1;
            return lines ? placeIn(*lines, at) : Place();
        }

        bool isVisible(Index clip)
        {
            for (; clip != kNone; clip = m_scene.clips[clip].parent) {
                const Clip &part = m_scene.clips[clip];
                if (!placeOf(part.path, m_flood.at).isInside(part.isEvenOdd))
                    return false;
            }
            return true;
        }

        static std::optional<Color> solid(const Paint &paint)
        {
            return paint.kind == Paint::Kind::Solid ? std::optional(paint.color) : std::nullopt;
        }

        void lookAtShape(Index number, const Node &node, PointD at, const RectD &box)
        {
            const Place place = placeOf(outlineOf(m_scene, node), at);
            std::optional<Color> line;
            if (node.stroke != kNone) {
                const Stroke &stroke = m_scene.strokes[node.stroke];
                line = solid(stroke.paint);
                if (place.fromLine <= stroke.width / 2 && !(m_flood.endsAtColor && !isSuch(line)))
                    return finish(isSuch(line) == m_flood.endsAtColor ? kNothing : std::nullopt);
            }
            if (!place.isInside(node.isEvenOdd) || (node.fill == kNone && !place.isClosed))
                return;
            if (line && isSuch(line) == m_flood.endsAtColor)
                goAround(number, box);
            if (node.fill == kNone)
                return;
            const auto color = solid(m_scene.paints[node.fill]);
            if (m_flood.endsAtColor) {
                if (isSuch(color))
                    finish(kNothing);
                else if (m_around != kNone)
                    finish(figure());
                return;
            }
            goAround(number, box);
            finish(!color ? std::nullopt : isSuch(color) ? figure() : kNothing);
        }

        bool isSuch(const std::optional<Color> &color) const { return color == m_flood.color; }

        // Of two figures the smaller one is inside.
        void goAround(Index number, const RectD &box)
        {
            if (m_around != kNone && m_box.width() * m_box.height() <= box.width() * box.height())
                return;
            m_around = number;
            m_box = box;
        }

        // The figure that was found. What came later is left as it is, though a flood that ends at
        // a colour would go over what has another.
        std::optional<Flooded> figure() const
        {
            if (m_around == kNone)
                return std::nullopt;
            const auto stands = [this](const Node &node) {
                return !intersection(paintedBounds(m_scene, node), m_box).isEmpty();
            };
            const auto later = std::span(m_scene.nodes).subspan(m_around + size_t(1));
            return Flooded{ m_around, !m_flood.endsAtColor || std::ranges::none_of(later, stands) };
        }

        static constexpr std::optional<Flooded> kNothing = Flooded{};

        const Scene &m_scene;
        const Flood &m_flood;
        int64_t &m_steps;
        double m_tolerance;
        std::optional<Flooded> m_answer;
        bool m_isOver = false;
        Index m_around = kNone; // the figure that was found so far
        RectD m_box; // of it
    };

} // namespace

std::optional<Flooded> flooded(const Scene &scene, const Flood &flood, int64_t &steps)
{
    return Search(scene, flood, steps).run();
}

} // namespace svgtool::picture
