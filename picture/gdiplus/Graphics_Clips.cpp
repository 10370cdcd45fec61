#include "picture/gdiplus/Graphics.h"

#include <utility>

namespace svgtool::picture {

using plus::CombineMode;

static constexpr Played kTooLarge = notDone("its clip has too many parts");

// More than the picture shows, so that what is cut out of it leaves no edge.
Area Graphics::everything() const
{
    const RectD &view = m_device.view;
    const double x = view.width(), y = view.height();
    Area area;
    area.path.addRect({ view.left - x, view.top - y, view.right + x, view.bottom + y });
    return area;
}

Index Graphics::clipTo(const Area &area)
{
    return m_builder.clip({ clip(), area.path, area.isEvenOdd });
}

// Cuts a chain to one more area.
Index Graphics::addClip(Index before, Area area)
{
    if (before != kNone && m_clips[before].area == area)
        return before; // the last one over again
    const Index parent = before != kNone ? m_clips[before].inScene : m_outerClip;
    Index inScene = m_builder.clip({ parent, area.path, area.isEvenOdd });
    const Clip &left = m_builder.scene().clips[inScene];
    const bool leavesNothing = (before != kNone && m_clips[before].leavesNothing)
            || intersection(left.path.bounds(), m_device.view).isEmpty();
    const auto box = rectOf(left.path.verbs(), left.path.points());
    if (left.isWhole() && box && box->contains(m_device.view))
        inScene = kNone;
    m_clips.push_back({ before, std::move(area), leavesNothing, inScene });
    return Index(m_clips.size() - 1);
}

// What a chain leaves of the container's clip; nothing in it for all.
std::optional<Area> Graphics::clipArea(Index clip)
{
    if (clip == m_state.outerClip)
        return everything();
    Area area = m_clips[clip].area;
    for (Index at = m_clips[clip].before; at != m_state.outerClip; at = m_clips[at].before) {
        auto both = m_builder.combined(area, m_clips[at].area, AreaMode::And);
        if (!both)
            return std::nullopt;
        area = std::move(*both);
    }
    return area;
}

Index Graphics::clip() const
{
    return m_state.clip != kNone ? m_clips[m_state.clip].inScene : m_outerClip;
}

bool Graphics::isClippedAway() const
{
    return m_state.clip != kNone && m_clips[m_state.clip].leavesNothing;
}

/// @param area  in units of the picture
Played Graphics::combineClip(Area area, CombineMode mode)
{
    if (mode == CombineMode::Intersect || mode == CombineMode::Replace) {
        const bool isNew = mode == CombineMode::Replace;
        m_state.clip = addClip(isNew ? m_state.outerClip : m_state.clip, std::move(area));
        return kDone;
    }
    auto earlier = clipArea(m_state.clip);
    if (!earlier)
        return kTooLarge;
    if (mode == CombineMode::Complement)
        std::swap(*earlier, area);
    const auto result =
            m_builder.combined(*earlier, area,
                               mode == CombineMode::Union         ? AreaMode::Or
                                       : mode == CombineMode::Xor ? AreaMode::Xor
                                                                  : AreaMode::Difference);
    if (!result)
        return kTooLarge;
    m_state.clip = addClip(m_state.outerClip, *result);
    return kDone;
}

Played Graphics::resetClip()
{
    m_state.clip = m_state.outerClip;
    return kDone;
}

Played Graphics::setClipRectangle(const RectD &box, CombineMode mode)
{
    Area area;
    area.path.addRect(box);
    area.path.transform(m_state.toPicture);
    return combineClip(std::move(area), mode);
}

Played Graphics::setClipPath(const plus::PathObject &path, CombineMode mode)
{
    if (!spend(path.outline.points().size()))
        return kTooLarge;
    Area area{ path.outline, !path.isWinding };
    area.path.transform(m_state.toPicture);
    return combineClip(std::move(area), mode);
}

Played Graphics::setClipRegion(const plus::Region &region, CombineMode mode)
{
    // The whole plane leaves all there is, and needs no clip.
    if (region.nodes.size() == 1 && region.nodes[0].kind == plus::RegionNode::Kind::Infinite) {
        if (mode == CombineMode::Replace || mode == CombineMode::Union)
            return resetClip();
        if (mode == CombineMode::Intersect)
            return kDone;
    }
    auto area = areaOf(region);
    return area ? combineClip(std::move(*area), mode) : kTooLarge;
}

Played Graphics::offsetClip(PointD offset)
{
    const PointD by = m_state.toPicture.mapVector(offset);
    std::vector<Index> chain;
    size_t work = 0;
    for (Index at = m_state.clip; at != m_state.outerClip; at = m_clips[at].before) {
        chain.push_back(at);
        work += limits::kClipPathWork + m_clips[at].area.path.points().size();
        if (work > m_left.areaWork) {
            m_left.areaWork = 0;
            return kTooLarge;
        }
    }
    m_left.areaWork -= work;
    Index clip = m_state.outerClip;
    for (; !chain.empty(); chain.pop_back()) {
        Area area = m_clips[chain.back()].area;
        area.path.transform(Affine::translation(by.x, by.y));
        clip = addClip(clip, std::move(area));
    }
    m_state.clip = clip;
    return kDone;
}

// In units of the picture.
std::optional<Area> Graphics::areaOf(const plus::Region &region)
{
    using Kind = plus::RegionNode::Kind;
    std::vector<Area> stack;
    if (!spend(region.nodes.size()))
        return std::nullopt;
    for (auto node = region.nodes.rbegin(); node != region.nodes.rend(); ++node) {
        Area area;
        if (node->isCombination()) {
            if (stack.size() < 2)
                return std::nullopt;
            Area left = std::move(stack.back());
            stack.pop_back();
            Area right = std::move(stack.back());
            stack.pop_back();
            if (node->kind == Kind::Complement)
                std::swap(left, right);
            auto both =
                    m_builder.combined(left, right,
                                       node->kind == Kind::Intersect       ? AreaMode::And
                                               : node->kind == Kind::Union ? AreaMode::Or
                                               : node->kind == Kind::Xor   ? AreaMode::Xor
                                                                           : AreaMode::Difference);
            if (!both)
                return std::nullopt;
            area = std::move(*both);
        } else if (node->kind == Kind::Infinite) {
            area = everything();
        } else if (node->kind == Kind::Rectangle) {
            area.path.addRect(node->box);
            area.path.transform(m_state.toPicture);
        } else if (node->kind == Kind::Path && node->path) {
            if (!spend(node->path->outline.points().size()))
                return std::nullopt;
            area = { node->path->outline, !node->path->isWinding };
            area.path.transform(m_state.toPicture);
        }
        stack.push_back(std::move(area));
    }
    return stack.size() == 1 ? std::optional(std::move(stack.back())) : std::nullopt;
}

} // namespace svgtool::picture
