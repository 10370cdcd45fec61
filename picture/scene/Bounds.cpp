#include "picture/scene/Passes.h"

#include "core/base/Limits.h"
#include "picture/scene/Extents.h"
#include "picture/scene/SceneBuilder.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    // Pixels around the view beyond which nothing is to be seen, and viewers may lose count.
    constexpr double kFar = 100'000;
    // Long ways of lines are cut nearer: renderers look for the crossings of all of them, which are
    // as many as the square, out of sight as well.
    constexpr double kNear = 2'000;
    constexpr size_t kLongWay = 256; // points
    // Dashes that are shorter in all cannot be told from a whole line, but take a viewer long.
    constexpr double kShortestDashes = 0.1;

    double unitsPerPixelOf(const Scene &scene)
    {
        return scene.view.width() / scene.width;
    }

    bool isFinite(const RectD &box)
    {
        return std::isfinite(box.left) && std::isfinite(box.top) && std::isfinite(box.right)
                && std::isfinite(box.bottom);
    }

    bool isFinite(std::span<const PointD> points)
    {
        return std::ranges::all_of(
                points, [](PointD p) { return std::isfinite(p.x) && std::isfinite(p.y); });
    }

    bool contains(const RectD &box, PointD p)
    {
        return box.left <= p.x && p.x <= box.right && box.top <= p.y && p.y <= box.bottom;
    }

    // One side of a box: what lies beyond the limit along an axis is cut off.
    struct Side
    {
        double PointD::*axis;
        double limit;
        double sign; // of the inside

        bool hasInside(PointD p) const { return (p.*axis - limit) * sign >= 0; }
        PointD crossing(PointD a, PointD b) const
        {
            const double t = (limit - a.*axis) / (b.*axis - a.*axis);
            PointD p{ a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t };
            p.*axis = limit;
            return p;
        }
    };

    // What is left of a figure of lines. Where it leaves and comes back, a line goes along the
    // side, out of sight.
    std::vector<PointD> cutFigure(std::span<const PointD> figure, bool isClosed, const Side &side)
    {
        std::vector<PointD> left;
        for (size_t i = 0; i < figure.size(); ++i) {
            const PointD to = figure[i];
            if (i > 0 || isClosed) {
                const PointD from = figure[i > 0 ? i - 1 : figure.size() - 1];
                if (side.hasInside(from) != side.hasInside(to))
                    left.push_back(side.crossing(from, to));
            }
            if (side.hasInside(to))
                left.push_back(to);
        }
        return left;
    }

    void addCut(Path &out, std::vector<PointD> figure, bool isClosed, const RectD &box)
    {
        for (const Side &side :
             { Side{ &PointD::x, box.left, 1 }, Side{ &PointD::x, box.right, -1 },
               Side{ &PointD::y, box.top, 1 }, Side{ &PointD::y, box.bottom, -1 } })
            figure = cutFigure(figure, isClosed, side);
        for (size_t i = 0; i < figure.size(); ++i)
            i == 0 ? out.moveTo(figure[i]) : out.lineTo(figure[i]);
        if (isClosed)
            out.close();
    }

    // Takes its points from those left; what needs more than there are leaves nothing.
    Path cut(const Path &path, const RectD &box, double tolerance, size_t &pointsLeft)
    {
        const auto lines = path.flattened(tolerance, pointsLeft);
        Path out;
        pointsLeft -= lines ? std::min(lines->points().size(), pointsLeft) : pointsLeft;
        if (!lines)
            return out;
        std::vector<PointD> figure;
        size_t next = 0;
        for (const Path::Verb verb : lines->verbs()) {
            if (verb == Path::Verb::Close) {
                addCut(out, std::move(figure), true, box);
                figure = {};
                continue;
            }
            if (verb == Path::Verb::Move) {
                addCut(out, std::move(figure), false, box);
                figure = {};
            }
            figure.push_back(lines->points()[next++]);
        }
        addCut(out, std::move(figure), false, box);
        return out;
    }

    class Cutter
    {
    public:
        explicit Cutter(Scene &scene) : m_scene(scene), m_unitsPerPixel(unitsPerPixelOf(scene))
        {
            m_limits = around(kFar * m_unitsPerPixel);
        }

        void cutAll()
        {
            for (Clip &clip : m_scene.clips)
                cutClip(clip);
            for (Stroke &stroke : m_scene.strokes)
                mendStroke(stroke);
            std::erase_if(m_scene.nodes, [this](Node &node) { return !cutNode(node); });
        }

    private:
        RectD around(double reach) const
        {
            const RectD &view = m_scene.view;
            return { view.left - reach, view.top - reach, view.right + reach, view.bottom + reach };
        }
        // How far what is left of a node may reach. Dashes count from where a line begins, and
        // curves are to stay curves.
        RectD limitsOf(const Node &node) const
        {
            if (node.kind != Node::Kind::Path || m_scene.paths[node.geometry].points < kLongWay
                || std::ranges::count(m_scene.verbsOf(node), Path::Verb::Curve) > 0)
                return m_limits;
            double reach = kNear * m_unitsPerPixel;
            if (node.stroke != kNone) {
                const Stroke &stroke = m_scene.strokes[node.stroke];
                reach += stroke.width * std::fmax(stroke.miterLimit, 1);
                if (!stroke.dashes.empty() || node.transform != kNone)
                    return m_limits;
            }
            return reach < kFar * m_unitsPerPixel ? around(reach) : m_limits;
        }
        void cutClip(Clip &clip)
        {
            if (!isFinite(clip.path.points()))
                clip.path.clear();
            else if (!areNear(clip.path.points(), m_limits))
                clip.path = cut(clip.path, m_limits, m_unitsPerPixel / 10, m_pointsLeft);
        }
        void mendStroke(Stroke &stroke)
        {
            const double widest = 2 * kFar * m_unitsPerPixel;
            stroke.width = stroke.width >= 0 ? std::fmin(stroke.width, widest) : 0;
            double length = 0;
            for (double &dash : stroke.dashes) {
                dash = dash >= 0 ? std::fmin(dash, widest) : 0;
                length += dash;
            }
            if (length < kShortestDashes * std::fmin(m_unitsPerPixel, stroke.width))
                stroke.dashes.clear();
        }
        static bool areNear(std::span<const PointD> points, const RectD &box)
        {
            return std::ranges::all_of(points, [&](PointD p) { return contains(box, p); });
        }

        // False for what is nowhere, or too far off to be told.
        bool cutNode(Node &node)
        {
            RectD box = limitsOf(node);
            double unit = m_unitsPerPixel;
            if (node.transform != kNone) {
                const Affine &matrix = m_scene.transforms[node.transform];
                const auto back = matrix.inverse();
                if (!matrix.isFinite() || !back || !back->isFinite())
                    return false;
                box = mapBounds(*back, box);
                unit *= std::fmax(back->scaleX(), back->scaleY());
                if (!isFinite(box))
                    return false;
            }
            switch (node.kind) {
            case Node::Kind::Path:
                return cutPath(node, box, unit);
            case Node::Kind::Rect:
                return cutRect(m_scene.rects[node.geometry], box);
            case Node::Kind::Ellipse:
                return cutEllipse(node, box, unit);
            case Node::Kind::Text:
                return cutText(m_scene.texts[node.geometry], box);
            case Node::Kind::Image:
                return box.contains(m_scene.imagePlaces[node.geometry].box);
            }
            return false;
        }
        bool cutPath(Node &node, const RectD &box, double unit)
        {
            const auto points = m_scene.pointsOf(node);
            if (areNear(points, box))
                return !points.empty();
            if (!isFinite(points))
                return false;
            return replace(node, pathOf(m_scene.verbsOf(node), points), box, unit);
        }
        bool replace(Node &node, const Path &path, const RectD &box, double unit)
        {
            const Path left = cut(path, box, unit / 10, m_pointsLeft);
            node.kind = Node::Kind::Path;
            node.geometry = addPath(m_scene, left);
            return !left.isEmpty();
        }
        static bool cutRect(Rect &rect, const RectD &box)
        {
            if (!isFinite(rect.box) || !std::isfinite(rect.rx) || !std::isfinite(rect.ry))
                return false;
            rect.box = intersection(rect.box, box);
            rect.rx = std::clamp(rect.rx, 0.0, std::fmax(rect.box.width() / 2, 0));
            rect.ry = std::clamp(rect.ry, 0.0, std::fmax(rect.box.height() / 2, 0));
            return rect.box.left <= rect.box.right && rect.box.top <= rect.box.bottom;
        }
        bool cutEllipse(Node &node, const RectD &box, double unit)
        {
            const auto [center, radii] = m_scene.ellipses[node.geometry];
            const RectD bounds{ center.x - radii.x, center.y - radii.y, center.x + radii.x,
                                center.y + radii.y };
            if (!isFinite(bounds) || !(radii.x >= 0 && radii.y >= 0))
                return false;
            if (box.contains(bounds))
                return true;
            Path path;
            path.addEllipse({ radii.x, 0, 0, radii.y, center.x, center.y });
            return replace(node, path, box, unit);
        }
        // Letters behind one that is far off are far off, too.
        bool cutText(Text &text, const RectD &box) const
        {
            const double size = m_scene.fonts[text.font].size;
            const double all = box.width() + box.height();
            const auto isFar = [all](const Text::Piece &piece) {
                return !(std::abs(piece.x) < all && std::abs(piece.y) < all);
            };
            if (!contains(box, text.baseline) || !(size > 0 && size < all)
                || !std::isfinite(text.turn) || !std::isfinite(reachOf(m_scene, text)))
                return false;
            const auto far = std::ranges::find_if(text.pieces, isFar);
            if (far == text.pieces.end())
                return true;
            text.characters.resize(far->first);
            text.pieces.erase(far, text.pieces.end());
            text.farthest = farthestOf(text.pieces);
            text.glyphs.resize(std::min(text.glyphs.size(), text.pieces.size()));
            return !text.pieces.empty();
        }

        Scene &m_scene;
        double m_unitsPerPixel;
        RectD m_limits;
        size_t m_pointsLeft = limits::kCutPoints;
    };

} // namespace

void ensureSize(Scene &scene)
{
    static constexpr double kLargest = 1e6;
    const auto side = [](double pixels) {
        return pixels > 0 && std::isfinite(pixels) ? std::clamp(pixels, 1.0, kLargest) : 1;
    };
    scene.width = side(scene.width);
    scene.height = side(scene.height);
    if (!isFinite(scene.view) || scene.view.isEmpty()
        || !std::isfinite(scene.view.width() + scene.view.height()))
        scene.view = { 0, 0, scene.width, scene.height };
}

void cutFar(Scene &scene)
{
    Cutter(scene).cutAll();
}

} // namespace svgtool::picture
