#include "picture/scene/Extents.h"
#include "picture/scene/Passes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace svgtool::picture {

namespace {

    /// Where something was painted, in cells as fine as a glance needs.
    class Painted
    {
    public:
        explicit Painted(const RectD &view) : m_view(view) { }

        void add(const RectD &area)
        {
            each(area, [this](size_t cell) { m_cells[cell] = true; });
        }
        bool meets(const RectD &area) const
        {
            bool meets = false;
            each(area, [&](size_t cell) { meets = meets || m_cells[cell]; });
            return meets;
        }

    private:
        static constexpr int kCells = 64; ///< along a side

        /// Cells of which the area has a part; none where it lies outside or is no rectangle.
        template<class Visit>
        void each(const RectD &area, const Visit &visit) const
        {
            const auto cell = [](double place, double start, double length) {
                const double share = std::floor((place - start) / length * kCells);
                return int(std::fmin(std::fmax(share, -1), kCells));
            };
            const int left = std::max(cell(area.left, m_view.left, m_view.width()), 0);
            const int right = std::min(cell(area.right, m_view.left, m_view.width()), kCells - 1);
            const int top = std::max(cell(area.top, m_view.top, m_view.height()), 0);
            const int bottom = std::min(cell(area.bottom, m_view.top, m_view.height()), kCells - 1);
            for (int y = top; y <= bottom; ++y)
                for (int x = left; x <= right; ++x)
                    visit(size_t(y) * kCells + size_t(x));
        }

        RectD m_view;
        std::array<bool, size_t(kCells) * kCells> m_cells{};
    };

} // namespace

void fillGaps(Scene &scene)
{
    const bool hasGaps = std::ranges::any_of(
            scene.strokes, [](const Stroke &stroke) { return stroke.ground.has_value(); });
    if (!hasGaps || scene.view.isEmpty())
        return;
    constexpr Color kPaper{ 255, 255, 255, 255 };
    Painted painted(scene.view);
    std::vector<Index> wholeLines(scene.strokes.size(), kNone); // of strokes with gaps
    std::vector<Node> nodes;
    nodes.reserve(scene.nodes.size());
    for (Node node : scene.nodes) {
        const RectD bounds = paintedBounds(scene, node);
        const auto ground = node.stroke != kNone ? scene.strokes[node.stroke].ground : std::nullopt;
        if (ground && (*ground != kPaper || node.fill != kNone || painted.meets(bounds))) {
            Index &whole = wholeLines[node.stroke];
            if (whole == kNone) {
                Stroke stroke = scene.strokes[node.stroke];
                stroke.paint = { Paint::Kind::Solid, *ground, kNone };
                stroke.dashes.clear();
                stroke.dashOffset = 0;
                stroke.ground.reset();
                whole = Index(scene.strokes.size());
                scene.strokes.push_back(stroke);
            }
            Node beneath = node;
            beneath.stroke = whole;
            nodes.push_back(beneath);
            node.fill = kNone;
        }
        nodes.push_back(node);
        painted.add(bounds);
    }
    scene.nodes = std::move(nodes);
}

} // namespace svgtool::picture
