#include "picture/scene/SceneBuilder.h"

#include <cstring>
#include <type_traits>
#include <utility>

namespace svgtool::picture {

namespace {

    // The values that make up a resource, side by side: equal ones have equal keys.
    class Key
    {
    public:
        template<class Value>
        Key &operator<<(const Value &value)
        {
            static_assert(std::is_arithmetic_v<Value> || std::is_enum_v<Value>);
            char bytes[sizeof value];
            std::memcpy(bytes, &value, sizeof value);
            m_bytes.append(bytes, sizeof value);
            return *this;
        }
        Key &operator<<(PointD p) { return *this << p.x << p.y; }
        Key &operator<<(const Color &c) { return *this << c.red << c.green << c.blue << c.alpha; }
        Key &operator<<(const Paint &p) { return *this << p.kind << p.color << p.resource; }
        Key &operator<<(const Path &path)
        {
            for (const Path::Verb verb : path.verbs())
                *this << verb;
            for (const PointD &point : path.points())
                *this << point;
            return *this;
        }
        std::string take() { return std::move(m_bytes); }

    private:
        std::string m_bytes;
    };

} // namespace

template<class Resource>
Index SceneBuilder::once(Known &known, std::vector<Resource> &list, const Resource &resource,
                         std::string key)
{
    const auto [place, isNew] = known.try_emplace(std::move(key), Index(list.size()));
    if (isNew)
        list.push_back(resource);
    return place->second;
}

Index SceneBuilder::paint(const Paint &paint)
{
    return once(m_paints, m_scene.paints, paint, (Key() << paint).take());
}

Index SceneBuilder::stroke(const Stroke &stroke)
{
    Key key;
    key << stroke.paint << stroke.width << stroke.cap << stroke.join << stroke.miterLimit;
    for (const double dash : stroke.dashes)
        key << dash;
    return once(m_strokes, m_scene.strokes, stroke, key.take());
}

Index SceneBuilder::hatch(const Hatch &hatch)
{
    Key key;
    key << hatch.tile << hatch.origin << hatch.lineWidth << hatch.color << hatch.ground.has_value()
        << hatch.ground.value_or(Color()) << hatch.lines;
    return once(m_hatches, m_scene.hatches, hatch, key.take());
}

Index SceneBuilder::clip(const Clip &clip)
{
    Key key;
    key << clip.parent << clip.isEvenOdd << clip.path;
    return once(m_clips, m_scene.clips, clip, key.take());
}

Index SceneBuilder::transform(const Affine &matrix)
{
    if (matrix.isIdentity())
        return kNone;
    Key key;
    key << matrix.a << matrix.b << matrix.c << matrix.d << matrix.e << matrix.f;
    return once(m_transforms, m_scene.transforms, matrix, key.take());
}

void SceneBuilder::add(Node node, const Path &path)
{
    node.kind = Node::Kind::Path;
    node.geometry = Index(m_scene.paths.size());
    m_scene.paths.push_back({ uint32_t(m_scene.verbs.size()), uint32_t(path.verbs().size()),
                              uint32_t(m_scene.points.size()), uint32_t(path.points().size()) });
    m_scene.verbs.insert(m_scene.verbs.end(), path.verbs().begin(), path.verbs().end());
    m_scene.points.insert(m_scene.points.end(), path.points().begin(), path.points().end());
    m_scene.nodes.push_back(node);
}

void SceneBuilder::add(Node node, const Rect &rect)
{
    node.kind = Node::Kind::Rect;
    node.geometry = Index(m_scene.rects.size());
    m_scene.rects.push_back(rect);
    m_scene.nodes.push_back(node);
}

void SceneBuilder::add(Node node, const Ellipse &ellipse)
{
    node.kind = Node::Kind::Ellipse;
    node.geometry = Index(m_scene.ellipses.size());
    m_scene.ellipses.push_back(ellipse);
    m_scene.nodes.push_back(node);
}

void SceneBuilder::add(Node node, Text text)
{
    node.kind = Node::Kind::Text;
    node.geometry = Index(m_scene.texts.size());
    m_scene.texts.push_back(std::move(text));
    m_scene.nodes.push_back(node);
}

} // namespace svgtool::picture
