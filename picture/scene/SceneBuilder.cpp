#include "picture/scene/SceneBuilder.h"

#include "core/base/Hash.h"
#include "core/base/Limits.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
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
            if (sizeof value > kRoom - m_size)
                flush();
            std::memcpy(m_room.data() + m_size, &value, sizeof value);
            m_size += sizeof value;
            return *this;
        }
        Key &operator<<(PointD p) { return *this << p.x << p.y; }
        Key &operator<<(const Affine &m) { return *this << m.a << m.b << m.c << m.d << m.e << m.f; }
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
        std::string take()
        {
            flush();
            return std::move(m_bytes);
        }

    private:
        void flush()
        {
            m_bytes.append(m_room.data(), m_size);
            m_size = 0;
        }

        static constexpr size_t kRoom = 256; // more than most take

        std::array<char, kRoom> m_room;
        size_t m_size = 0; // of what is in it, which comes behind the bytes
        std::string m_bytes;
    };

} // namespace

template<class Resource, class MakeKey>
Index SceneBuilder::once(Known &known, std::vector<Resource> &list, const Resource &resource,
                         MakeKey makeKey)
{
    if (known.latest != kNone && list[known.latest] == resource)
        return known.latest;
    Key key;
    makeKey(key);
    const auto [place, isNew] =
            known.numbers.try_emplace(HashedBytes(key.take()), Index(list.size()));
    if (isNew)
        list.push_back(resource);
    known.latest = place->second;
    return known.latest;
}

SceneBuilder::SceneBuilder(double unitsPerPixel, ByteView file)
    : m_unitsPerPixel(unitsPerPixel), m_file(file)
{
    m_allowances.areaWork += size_t(file.size) * limits::kAreaWorkOfByte;
    m_allowances.pointsOfOutlines += size_t(file.size);
}

bool SceneBuilder::isLent(ByteView bytes) const
{
    const std::less<const char *> isBefore; // which tells of bytes of other blocks, too
    const char *const end = m_file.data + m_file.size;
    return bytes.size > 0 && !isBefore(bytes.data, m_file.data)
            && !isBefore(end, bytes.data + bytes.size);
}

Index SceneBuilder::paint(const Paint &paint)
{
    return once(m_paints, m_scene.paints, paint, [&](Key &key) { key << paint; });
}

Index SceneBuilder::stroke(const Stroke &stroke)
{
    return once(m_strokes, m_scene.strokes, stroke, [&](Key &key) {
        key << stroke.paint << stroke.width << stroke.cap << stroke.join << stroke.miterLimit
            << stroke.dashOffset << stroke.ground.has_value() << stroke.ground.value_or(Color());
        for (const double dash : stroke.dashes)
            key << dash;
    });
}

Index SceneBuilder::hatch(const Hatch &hatch)
{
    return once(m_hatches, m_scene.hatches, hatch, [&](Key &key) {
        key << hatch.tile << hatch.origin << hatch.lineWidth << hatch.color
            << hatch.ground.has_value() << hatch.ground.value_or(Color()) << hatch.transform
            << hatch.lines;
    });
}

Index SceneBuilder::pattern(const Pattern &pattern)
{
    return once(m_patterns, m_scene.patterns, pattern, [&](Key &key) {
        key << pattern.image << pattern.tile.left << pattern.tile.top << pattern.tile.right
            << pattern.tile.bottom << pattern.transform << pattern.mirrorsX << pattern.mirrorsY
            << pattern.isSmooth;
    });
}

Index SceneBuilder::gradient(const Gradient &gradient)
{
    return once(m_gradients, m_scene.gradients, gradient, [&](Key &key) {
        key << gradient.from << gradient.to << gradient.spread << gradient.isRadial
            << gradient.transform;
        for (const Gradient::Stop &stop : gradient.stops)
            key << stop.offset << stop.color;
    });
}

static uint64_t hashOfImage(const Image &image)
{
    const Bitmap &pixels = image.pixels;
    uint64_t hash = uint64_t(uint32_t(image.size.width)) << 32 | uint32_t(image.size.height);
    hash = hash << 3 | uint64_t(pixels.format()); // the same bytes may have alpha or not
    hash = hashOf({ image.file.data(), int64_t(image.file.size()) }, hash);
    for (int32_t y = 0; y < pixels.height(); ++y) {
        const auto *const line = reinterpret_cast<const char *>(pixels.line(y));
        hash = hashOf({ line, pixels.lineBytes() }, hash);
    }
    // Of the colours those that are seen: bitmaps that differ in others are the same.
    const auto used = pixels.usedIndices();
    for (size_t i = 0; i < pixels.colours().size() && i < used.size(); ++i) {
        if (used[i])
            hash = (hash ^ pixels.colours()[i]) * 0x100000001B3;
    }
    return hash;
}

Index SceneBuilder::image(Image image)
{
    const auto number = Index(m_scene.images.size());
    const auto [known, isNew] = m_images.try_emplace(hashOfImage(image), number);
    if (!isNew) {
        const Image &other = m_scene.images[known->second];
        if (other.size == image.size && other.file == image.file
            && other.pixels.isNull() == image.pixels.isNull()
            && (image.pixels.isNull() || other.pixels == image.pixels))
            return known->second;
    }
    m_scene.images.push_back(std::move(image));
    return number;
}

template<class Value>
static ByteView bytesOf(std::span<const Value> values)
{
    return { reinterpret_cast<const char *>(values.data()), int64_t(values.size_bytes()) };
}

static bool areSame(ByteView a, ByteView b)
{
    return std::ranges::equal(std::span(a.data, size_t(a.size)), std::span(b.data, size_t(b.size)));
}

// There may be many, which a key for each would double.
Index SceneBuilder::clipAlone(Clip clip)
{
    const ByteView verbs = bytesOf(clip.path.verbs()), points = bytesOf(clip.path.points());
    const uint64_t hash = hashOf(points, hashOf(verbs, clip.isEvenOdd ? 1 : 0));
    const auto number = Index(m_scene.clips.size());
    const auto [known, isNew] = m_clipsAlone.try_emplace(hash, number);
    if (!isNew) {
        const Clip &other = m_scene.clips[known->second];
        if (other.isEvenOdd == clip.isEvenOdd && areSame(bytesOf(other.path.verbs()), verbs)
            && areSame(bytesOf(other.path.points()), points))
            return known->second;
    }
    m_scene.clips.push_back(std::move(clip));
    return number;
}

Index SceneBuilder::clip(Clip clip)
{
    if (clip.parent == kNone)
        return clipAlone(std::move(clip));
    Key key;
    key << clip.parent << clip.isEvenOdd << clip.path;
    const auto [place, isNew] = m_clips.numbers.try_emplace(HashedBytes(key.take()), clip.parent);
    if (!isNew)
        return place->second;
    auto cut = cutToParent(std::move(clip));
    if (cut) {
        place->second = Index(m_scene.clips.size());
        m_scene.clips.push_back(std::move(*cut));
    }
    return place->second;
}

std::optional<Area> SceneBuilder::combined(const Area &a, const Area &b, AreaMode mode)
{
    constexpr double kTolerance = 0.02; // pixels
    m_allowances.areaWork -= std::min(m_allowances.areaWork, limits::kAreaCombination);
    return svgtool::combined(a, b, mode, kTolerance * m_unitsPerPixel, m_allowances.areaWork);
}

// Nothing for all that the parent lets through.
std::optional<Clip> SceneBuilder::cutToParent(Clip clip)
{
    const auto box = rectOf(clip.path.verbs(), clip.path.points());
    const Clip &outer = m_scene.clips[clip.parent];
    const size_t work = clip.path.points().size() + outer.path.points().size();
    if (!outer.isWhole() || work > m_allowances.areaWork)
        return clip;
    m_allowances.areaWork -= work;
    const auto outerBox = rectOf(outer.path.verbs(), outer.path.points());
    if (box && box->contains(outer.path.bounds()))
        return std::nullopt;
    if (box && outerBox) {
        const RectD common = intersection(*box, *outerBox);
        clip.path.clear();
        if (!common.isEmpty())
            clip.path.addRect(common);
    } else if (!outerBox || !outerBox->contains(clip.path.bounds())) {
        auto both = combined({ clip.path, clip.isEvenOdd }, { outer.path, outer.isEvenOdd },
                             AreaMode::And);
        if (!both)
            return clip;
        clip.path = std::move(both->path);
        clip.isEvenOdd = both->isEvenOdd;
    }
    clip.isWithinParent = true;
    return clip;
}

Index SceneBuilder::transform(const Affine &matrix)
{
    if (matrix.isIdentity())
        return kNone;
    return once(m_transforms, m_scene.transforms, matrix, [&](Key &key) { key << matrix; });
}

Index SceneBuilder::font(const FontStyle &font)
{
    return once(m_fonts, m_scene.fonts, font, [&](Key &key) {
        key << font.generic << font.size << font.weight << font.isItalic << font.isUnderlined
            << font.isStruckOut;
        for (const std::u16string &family : font.families) {
            for (const char16_t unit : family)
                key << unit;
            key << u'\0';
        }
    });
}

Index SceneBuilder::glyph(const Path &outline)
{
    return once(m_glyphs, m_scene.glyphs, outline, [&](Key &key) { key << outline; });
}

Index addPath(Scene &scene, const Path &path)
{
    scene.paths.push_back({ uint32_t(scene.verbs.size()), uint32_t(path.verbs().size()),
                            uint32_t(scene.points.size()), uint32_t(path.points().size()) });
    scene.verbs.insert(scene.verbs.end(), path.verbs().begin(), path.verbs().end());
    scene.points.insert(scene.points.end(), path.points().begin(), path.points().end());
    return Index(scene.paths.size() - 1);
}

void SceneBuilder::beginGroup(std::u16string title)
{
    if (m_depth++ >= limits::kGroups)
        return;
    m_scene.groups.push_back({ m_group, std::move(title) });
    m_group = Index(m_scene.groups.size() - 1);
}

void SceneBuilder::endGroup()
{
    if (m_depth > 0 && m_depth-- <= limits::kGroups)
        m_group = m_scene.groups[m_group].parent;
}

// The geometry is the last one of its list.
void SceneBuilder::add(Node node, Node::Kind kind, size_t geometries)
{
    node.kind = kind;
    node.geometry = Index(geometries - 1);
    node.group = m_group;
    m_scene.nodes.push_back(node);
}

void SceneBuilder::add(Node node, const Path &path, const Affine &place)
{
    addPath(m_scene, path);
    if (!place.isIdentity()) {
        for (PointD &point : std::span(m_scene.points).last(path.points().size()))
            point = place.map(point);
    }
    add(node, Node::Kind::Path, m_scene.paths.size());
}

void SceneBuilder::add(Node node, std::span<const RectI> rects, const Affine &place)
{
    using Verb = Path::Verb;
    static constexpr Verb kVerbs[] = { Verb::Move, Verb::Line, Verb::Line, Verb::Line,
                                       Verb::Close };
    const auto isNothing = [](const RectI &rect) { return rect.isEmpty(); };
    const auto count = rects.size() - size_t(std::count_if(rects.begin(), rects.end(), isNothing));
    PathRange range{ uint32_t(m_scene.verbs.size()), uint32_t(count * std::size(kVerbs)),
                     uint32_t(m_scene.points.size()), uint32_t(count * 4) };
    m_scene.verbs.resize(m_scene.verbs.size() + range.verbs);
    m_scene.points.resize(m_scene.points.size() + range.points);
    auto verb = m_scene.verbs.end() - range.verbs;
    auto point = m_scene.points.end() - range.points;
    for (const RectI &rect : rects) {
        if (rect.isEmpty())
            continue;
        verb = std::copy(std::begin(kVerbs), std::end(kVerbs), verb);
        const double left = rect.left, top = rect.top, right = rect.right, bottom = rect.bottom;
        for (const PointD corner : { PointD{ left, top }, PointD{ right, top },
                                     PointD{ right, bottom }, PointD{ left, bottom } })
            *point++ = place.map(corner);
    }
    m_scene.paths.push_back(range);
    add(node, Node::Kind::Path, m_scene.paths.size());
}

void SceneBuilder::add(Node node, const Rect &rect)
{
    m_scene.rects.push_back(rect);
    add(node, Node::Kind::Rect, m_scene.rects.size());
}

void SceneBuilder::add(Node node, const Ellipse &ellipse)
{
    m_scene.ellipses.push_back(ellipse);
    add(node, Node::Kind::Ellipse, m_scene.ellipses.size());
}

void SceneBuilder::add(Node node, Text text)
{
    text.farthest = farthestOf(text.pieces);
    m_scene.texts.push_back(std::move(text));
    add(node, Node::Kind::Text, m_scene.texts.size());
}

void SceneBuilder::add(Node node, const ImagePlace &place)
{
    m_scene.imagePlaces.push_back(place);
    add(node, Node::Kind::Image, m_scene.imagePlaces.size());
}

void SceneBuilder::takeBack(const Mark &mark)
{
    for (; m_scene.images.size() > mark.images; m_scene.images.pop_back()) {
        const auto number = Index(m_scene.images.size() - 1);
        const auto known = m_images.find(hashOfImage(m_scene.images.back()));
        if (known != m_images.end() && known->second == number)
            m_images.erase(known);
    }
    for (; m_scene.nodes.size() > mark.nodes; m_scene.nodes.pop_back()) {
        const Node &node = m_scene.nodes.back();
        // Geometry is in the order of the nodes, so that the last one's is the last.
        switch (node.kind) {
        case Node::Kind::Path:
            m_scene.verbs.resize(m_scene.paths.back().firstVerb);
            m_scene.points.resize(m_scene.paths.back().firstPoint);
            m_scene.paths.pop_back();
            break;
        case Node::Kind::Rect:
            m_scene.rects.pop_back();
            break;
        case Node::Kind::Ellipse:
            m_scene.ellipses.pop_back();
            break;
        case Node::Kind::Text:
            m_scene.texts.pop_back();
            break;
        case Node::Kind::Image:
            m_scene.imagePlaces.pop_back();
            break;
        }
    }
}

} // namespace svgtool::picture
