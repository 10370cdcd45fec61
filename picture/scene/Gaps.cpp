#include "picture/scene/Extents.h"
#include "picture/scene/Passes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace svgtool::picture {

namespace {

    /// Where something was painted, in cells as fine as a glance needs.
    class Painted
    {
    public:
        explicit Painted(const RectD &view) : m_view(view) { }

        void add(const RectD &area)
        {
            const Cells cells = cellsOf(area);
            for (int row = cells.top; row <= cells.bottom; ++row)
                m_rows[size_t(row)] |= cells.columns;
        }
        bool meets(const RectD &area) const
        {
            const Cells cells = cellsOf(area);
            for (int row = cells.top; row <= cells.bottom; ++row) {
                if ((m_rows[size_t(row)] & cells.columns) != 0)
                    return true;
            }
            return false;
        }

    private:
        static constexpr int kCells = 64; ///< along a side, as a word has bits

        struct Cells
        {
            int top, bottom;
            uint64_t columns; ///< a bit each
        };

        /// Those of which the area has a part; none where it lies outside or is no rectangle.
        Cells cellsOf(const RectD &area) const
        {
            const auto cell = [](double place, double start, double length) {
                const double share = std::floor((place - start) / length * kCells);
                return int(std::fmin(std::fmax(share, -1), kCells));
            };
            const int left = std::max(cell(area.left, m_view.left, m_view.width()), 0);
            const int right = std::min(cell(area.right, m_view.left, m_view.width()), kCells - 1);
            const int top = std::max(cell(area.top, m_view.top, m_view.height()), 0);
            const int bottom = std::min(cell(area.bottom, m_view.top, m_view.height()), kCells - 1);
            constexpr uint64_t kAll = ~uint64_t(0);
            const bool hasColumns = left <= right;
            return { top, bottom,
                     hasColumns ? (kAll << left) & (kAll >> (kCells - 1 - right)) : 0 };
        }

        RectD m_view;
        std::array<uint64_t, kCells> m_rows{};
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
