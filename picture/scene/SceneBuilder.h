#pragma once

#include "core/base/Bytes.h"
#include "core/base/Hash.h"
#include "core/geometry/Areas.h"
#include "core/geometry/Region.h"
#include "picture/scene/Allowances.h"
#include "picture/scene/Scene.h"

#include <map>
#include <span>
#include <string>
#include <string_view>

namespace svgtool::picture {

/// Puts a path into the blocks of a scene.
/// @return what a node names it by
Index addPath(Scene &scene, const Path &path);

/// Puts nodes into a scene, and equal resources only once.
class SceneBuilder
{
public:
    /// @param unitsPerPixel  of the picture, for what need not be finer than it shows
    /// @param file           whose bytes stay where they are as long as the scene: images may
    ///                       borrow them. The longer it is, the more work there may be.
    explicit SceneBuilder(double unitsPerPixel = 1, ByteView file = {});

    Scene &scene() { return m_scene; }
    const Scene &scene() const { return m_scene; }
    Scene take() { return std::move(m_scene); }

    /// Whether they are of the file.
    bool isLent(ByteView bytes) const;

    Index paint(const Paint &paint);
    Index stroke(const Stroke &stroke);
    Index hatch(const Hatch &hatch);
    Index image(Image image);
    Index pattern(const Pattern &pattern);
    Index gradient(const Gradient &gradient);
    /// Cut to its parent, since some viewers know nothing of clips that are cut to others; it stays
    /// as it is where that is too much work. The parent itself where nothing of that is cut off.
    Index clip(Clip clip);
    /// kNone for the identity.
    Index transform(const Affine &matrix);
    Index font(const FontStyle &font);
    Index glyph(const Path &outline);

    /// Two areas as one, of lines in the place of curves; nothing where that is too much work.
    std::optional<Area> combined(const Area &a, const Area &b, AreaMode mode);
    /// For all that paint in the scene.
    Allowances &allowances() { return m_allowances; }

    /// The geometry of the node is added with it, the rest of it taken as it stands.
    /// @param place  to the units of the node, which lie in front of its transform
    void add(Node node, const Path &path, const Affine &place = {});
    /// The same with a path of rectangles, without those in which nothing is.
    void add(Node node, std::span<const RectI> rects, const Affine &place);
    void add(Node node, const Rect &rect);
    void add(Node node, const Ellipse &ellipse);
    void add(Node node, Text text);
    void add(Node node, const ImagePlace &place);

    /// Nodes added from now on lie in a group within the one in force. Groups that would lie too
    /// deep are none.
    void beginGroup(std::u16string title);
    /// Goes back to the group around the one in force.
    void endGroup();
    /// How many groups have begun and not ended.
    size_t groupDepth() const { return m_depth; }

    /// How much there is.
    struct Mark
    {
        size_t nodes = 0, images = 0;
    };
    Mark mark() const { return { m_scene.nodes.size(), m_scene.images.size() }; }
    /// Takes back the nodes and images that have been added since.
    void takeBack(const Mark &mark);

private:
    /// Resources by their values.
    struct Known
    {
        std::map<HashedBytes, Index> numbers;
        Index latest = kNone; ///< what was asked for, which mostly is asked for again
    };

    /// @param makeKey  gives its values side by side: equal resources have equal keys
    template<class Resource, class MakeKey>
    static Index once(Known &known, std::vector<Resource> &list, const Resource &resource,
                      MakeKey makeKey);

    void add(Node node, Node::Kind kind, size_t geometries);
    Index clipAlone(Clip clip);
    std::optional<Clip> cutToParent(Clip clip);

    double m_unitsPerPixel;
    ByteView m_file;
    Allowances m_allowances;
    Scene m_scene;
    Index m_group = kNone;
    size_t m_depth = 0;
    Known m_paints, m_strokes, m_hatches, m_patterns, m_gradients, m_transforms;
    Known m_fonts, m_glyphs;
    Known m_clips; ///< within others, as they were before they were cut to them
    /// By hashes of what they show. Of those that share one only the first is known.
    std::map<uint64_t, Index> m_clipsAlone, m_images;
};

} // namespace svgtool::picture
