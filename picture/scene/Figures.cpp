#include "picture/scene/Extents.h"
#include "picture/scene/Passes.h"

#include <algorithm>
#include <span>

namespace svgtool::picture {

namespace {

    // Paths in a row that can be one.
    class Run
    {
    public:
        explicit Run(Scene &scene) : m_scene(scene) { }

        // Takes a node, the first or one that leaves the picture as it is.
        bool take(const Node &node)
        {
            if (!m_nodes.empty() && !goesOn(node))
                return false;
            m_nodes.push_back(node);
            m_points += m_scene.paths[node.geometry].points;
            if (!mayOverlap(node))
                m_boxes.push_back(inkOf(m_scene, node));
            return true;
        }

        // Ends the run: one node with all figures.
        Node end()
        {
            Node node = m_nodes.front();
            if (m_nodes.size() > 1)
                node.geometry = joined();
            m_nodes.clear();
            m_boxes.clear();
            m_points = 0;
            return node;
        }

        bool isEmpty() const { return m_nodes.empty(); }

    private:
        // A stroke of one opaque colour can go over itself.
        bool mayOverlap(const Node &node) const
        {
            if (node.fill != kNone || node.stroke == kNone || node.opacity < 1)
                return false;
            const Paint &paint = m_scene.strokes[node.stroke].paint;
            return paint.kind == Paint::Kind::Solid && paint.color.alpha == 255;
        }

        bool goesOn(const Node &node) const
        {
            // Viewers, and people who edit the document, are slow with paths of any length.
            constexpr size_t kMostPoints = 2000, kMostBoxes = 64;
            const Node &first = m_nodes.front();
            if (node.fill != first.fill || node.stroke != first.stroke || node.clip != first.clip
                || node.transform != first.transform || node.group != first.group
                || node.opacity != first.opacity || node.blend != Blend::Normal
                || first.blend != Blend::Normal
                || (node.fill != kNone && node.isEvenOdd != first.isEvenOdd)
                || m_points + m_scene.paths[node.geometry].points > kMostPoints)
                return false;
            if (mayOverlap(node))
                return true;
            const RectD ink = inkOf(m_scene, node);
            return m_boxes.size() < kMostBoxes
                    && std::ranges::all_of(m_boxes, [&ink](const RectD &box) {
                           return intersection(box, ink).isEmpty();
                       });
        }

        // A new path of all, where they are if they lie side by side.
        Index joined()
        {
            PathRange whole = m_scene.paths[m_nodes.front().geometry];
            bool isInRow = true;
            for (const Node &node : std::span(m_nodes).subspan(1)) {
                const PathRange &range = m_scene.paths[node.geometry];
                isInRow = isInRow && range.firstVerb == whole.firstVerb + whole.verbs
                        && range.firstPoint == whole.firstPoint + whole.points;
                whole.verbs += range.verbs;
                whole.points += range.points;
            }
            if (!isInRow)
                whole = copied();
            m_scene.paths.push_back(whole);
            return Index(m_scene.paths.size() - 1);
        }

        PathRange copied()
        {
            Scene &scene = m_scene;
            PathRange whole{ uint32_t(scene.verbs.size()), 0, uint32_t(scene.points.size()), 0 };
            for (const Node &node : m_nodes) {
                const PathRange range = scene.paths[node.geometry];
                whole.verbs += range.verbs;
                whole.points += range.points;
                scene.verbs.resize(scene.verbs.size() + range.verbs);
                scene.points.resize(scene.points.size() + range.points);
                std::copy_n(scene.verbs.begin() + range.firstVerb, range.verbs,
                            scene.verbs.end() - range.verbs);
                std::copy_n(scene.points.begin() + range.firstPoint, range.points,
                            scene.points.end() - range.points);
            }
            return whole;
        }

        Scene &m_scene;
        std::vector<Node> m_nodes;
        std::vector<RectD> m_boxes; // of what each paints, where it matters
        size_t m_points = 0;
    };

} // namespace

void joinFigures(Scene &scene)
{
    // What is kept moves down over what is joined.
    auto &nodes = scene.nodes;
    size_t kept = 0;
    Run run(scene);
    for (const Node &node : nodes) {
        const bool isPath = node.kind == Node::Kind::Path;
        if (isPath && run.take(node))
            continue;
        if (!run.isEmpty())
            nodes[kept++] = run.end();
        if (isPath)
            run.take(node);
        else
            nodes[kept++] = node;
    }
    if (!run.isEmpty())
        nodes[kept++] = run.end();
    nodes.resize(kept);
}

} // namespace svgtool::picture
