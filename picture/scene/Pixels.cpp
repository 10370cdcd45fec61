#include "picture/scene/Passes.h"

#include "picture/scene/SceneBuilder.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    // Fewer in a row are left as they are.
    constexpr size_t kFewest = 8;
    // Places of an image for each pixel that is set.
    constexpr double kMostPlaces = 4;

    class PixelJoiner
    {
    public:
        explicit PixelJoiner(Scene &scene)
            : m_scene(scene), m_unit(scene.view.width() / scene.width)
        {
        }

        void joinAll()
        {
            if (std::ranges::none_of(m_scene.nodes, [this](auto &node) { return isPixel(node); }))
                return;
            const std::vector<Node> nodes = std::move(m_scene.nodes);
            m_scene.nodes.clear();
            for (size_t i = 0; i < nodes.size();) {
                size_t end = i;
                while (end < nodes.size() && isPixel(nodes[end])
                       && nodes[end].clip == nodes[i].clip)
                    ++end;
                const std::span run(nodes.data() + i, std::max(end - i, size_t(1)));
                if (run.size() < kFewest)
                    m_scene.nodes.insert(m_scene.nodes.end(), run.begin(), run.end());
                else
                    join(run);
                i += run.size();
            }
        }

    private:
        const RectD &boxOf(const Node &node) const { return m_scene.rects[node.geometry].box; }
        bool isPixel(const Node &node) const
        {
            if (node.kind != Node::Kind::Rect || node.stroke != kNone || node.fill == kNone
                || node.transform != kNone || node.blend != Blend::Normal || node.opacity != 1)
                return false;
            const Paint &paint = m_scene.paints[node.fill];
            const RectD &box = boxOf(node);
            const auto isUnit = [unit = m_unit](double length) {
                return std::abs(length - unit) < unit / 1000;
            };
            return paint.kind == Paint::Kind::Solid && paint.color.alpha == 255
                    && isUnit(box.width()) && isUnit(box.height());
        }

        static size_t alike(std::span<const Node> run)
        {
            const auto other = std::ranges::find_if(
                    run, [&](const Node &node) { return node.fill != run[0].fill; });
            return size_t(other - run.begin());
        }

        void join(std::span<const Node> run)
        {
            if (joinToImage(run))
                return;
            // What is between long rows of one colour may be one yet.
            std::span<const Node> others = run.first(0);
            while (!run.empty()) {
                const size_t count = alike(run);
                if (count < kFewest) {
                    others = { others.empty() ? run.data() : others.data(), others.size() + count };
                } else {
                    joinOthers(others);
                    others = {};
                    joinToPath(run.first(count));
                }
                run = run.subspan(count);
            }
            joinOthers(others);
        }

        void joinOthers(std::span<const Node> run)
        {
            if (run.size() >= kFewest && joinToImage(run))
                return;
            m_scene.nodes.insert(m_scene.nodes.end(), run.begin(), run.end());
        }

        void joinToPath(std::span<const Node> run)
        {
            Path path;
            for (const Node &node : run)
                path.addRect(boxOf(node));
            Node node = run[0];
            node.kind = Node::Kind::Path;
            node.isEvenOdd = false; // a pixel that is set twice stays
            node.geometry = addPath(m_scene, path);
            m_scene.nodes.push_back(node);
        }

        bool joinToImage(std::span<const Node> run)
        {
            if (alike(run) == run.size())
                return false;
            RectD all = boxOf(run[0]);
            for (const Node &node : run) {
                const RectD &box = boxOf(node);
                all = { std::fmin(all.left, box.left), std::fmin(all.top, box.top),
                        std::fmax(all.right, box.right), std::fmax(all.bottom, box.bottom) };
            }
            const double columns = all.width() / m_unit, rows = all.height() / m_unit;
            if (!(columns * rows <= kMostPlaces * double(run.size())))
                return false;
            Image image;
            image.size = { int32_t(std::lround(columns)), int32_t(std::lround(rows)) };
            image.pixels = Bitmap(PixelFormat::Bgra32, image.size);
            for (const Node &node : run) {
                const double x = (boxOf(node).left - all.left) / m_unit;
                const double y = (boxOf(node).top - all.top) / m_unit;
                if (std::abs(x - std::round(x)) > 0.01 || std::abs(y - std::round(y)) > 0.01)
                    return false; // not on one grid
                const Color color = m_scene.paints[node.fill].color;
                uint8_t *const pixel =
                        image.pixels.line(int32_t(std::lround(y))) + size_t(std::lround(x)) * 4;
                pixel[0] = color.blue;
                pixel[1] = color.green;
                pixel[2] = color.red;
                pixel[3] = 255;
            }
            Node node = run[0];
            node.kind = Node::Kind::Image;
            node.fill = kNone;
            node.geometry = Index(m_scene.imagePlaces.size());
            m_scene.imagePlaces.push_back({ Index(m_scene.images.size()), all, true });
            m_scene.images.push_back(std::move(image));
            m_scene.nodes.push_back(node);
            return true;
        }

        Scene &m_scene;
        double m_unit; // of a pixel
    };

} // namespace

void joinPixels(Scene &scene)
{
    PixelJoiner(scene).joinAll();
}

} // namespace svgtool::picture
