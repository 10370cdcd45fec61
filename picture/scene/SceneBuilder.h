#pragma once

#include "picture/scene/Scene.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace svgtool::picture {

/// Puts nodes into a scene, and equal resources only once.
class SceneBuilder
{
public:
    Scene &scene() { return m_scene; }
    const Scene &scene() const { return m_scene; }
    Scene take() { return std::move(m_scene); }

    Index paint(const Paint &paint);
    Index stroke(const Stroke &stroke);
    Index hatch(const Hatch &hatch);
    Index clip(const Clip &clip);
    /// kNone for the identity.
    Index transform(const Affine &matrix);

    /// The geometry of the node is added with it, the rest of it taken as it stands.
    void add(Node node, const Path &path);
    void add(Node node, const Rect &rect);
    void add(Node node, const Ellipse &ellipse);
    void add(Node node, Text text);

private:
    using Known = std::unordered_map<std::string, Index>;

    template<class Resource>
    static Index once(Known &known, std::vector<Resource> &list, const Resource &resource,
                      std::string key);

    Scene m_scene;
    Known m_paints, m_strokes, m_hatches, m_clips, m_transforms;
};

} // namespace svgtool::picture
