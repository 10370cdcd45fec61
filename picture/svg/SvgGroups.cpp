#include "picture/svg/SvgGroups.h"

#include <algorithm>
#include <utility>

namespace svgtool::picture {

namespace {

    constexpr int64_t kTags = sizeof "<g>\n</g>\n" - 1;
    constexpr size_t kClip = size_t(Property::ClipPath), kMatrix = size_t(Property::Transform);

    // What the elements looked at have in common.
    class Common
    {
    public:
        Common(std::span<const uint32_t> costs, const Style &outer)
            : m_costs(costs), m_isClipSaid(outer[kClip] != SvgStyles::kAny)
        {
            for (size_t i = 0; i < kProperties; ++i) {
                if (outer[i] == SvgStyles::kAny)
                    m_open[m_openCount++] = uint8_t(i);
            }
        }

        /// @param times  that it comes in a row
        void add(const Style &style, uint32_t times)
        {
            size_t kept = 0;
            for (size_t k = 0; k < m_openCount; ++k) {
                const uint8_t i = m_open[k];
                const Index value = style[i];
                if (value != SvgStyles::kAny) {
                    if (m_values[i] == SvgStyles::kAny)
                        m_values[i] = value;
                    else if (m_values[i] != value)
                        m_values[i] = SvgStyles::kOwn; // which a group does not say
                    m_users[i] += times;
                }
                m_open[kept] = i;
                kept += value == SvgStyles::kAny || isOpen(i) ? 1U : 0U;
            }
            m_openCount = kept;
        }
        // Whether more elements can still share anything.
        bool isWorthMore() const
        {
            return std::any_of(m_open.begin(), m_open.begin() + ptrdiff_t(m_openCount),
                               [this](uint8_t i) { return m_costs[m_values[i]] > 0; });
        }
        int64_t saved() const
        {
            int64_t bytes = -kTags;
            for (size_t k = 0; k < m_openCount; ++k) {
                const uint8_t i = m_open[k];
                if (isShared(i))
                    bytes += int64_t(m_users[i] - 1) * m_costs[m_values[i]];
            }
            return bytes;
        }
        Style shared() const
        {
            Style style{};
            for (size_t k = 0; k < m_openCount; ++k) {
                const uint8_t i = m_open[k];
                if (isShared(i))
                    style[i] = m_values[i];
            }
            return style;
        }

    private:
        // Whether what is said of a property counts: that there is no clip, or what costs anything.
        bool isOpen(size_t i) const
        {
            return m_costs[m_values[i]] > 0 || (i == kClip && m_values[i] == SvgStyles::kDefault);
        }
        bool isShared(size_t i) const
        {
            // A transform stands within the clip, for it would turn that, too.
            const bool isUnclipped = m_isClipSaid || m_values[kClip] == SvgStyles::kDefault;
            if (i == kMatrix && !isUnclipped)
                return false;
            return m_users[i] > 1 && m_costs[m_values[i]] > 0;
        }

        std::span<const uint32_t> m_costs;
        bool m_isClipSaid; // by a group around
        Style m_values{};
        // The properties in which elements do not differ yet, as far as groups say them.
        std::array<uint8_t, kProperties> m_open{};
        size_t m_openCount = 0;
        std::array<uint32_t, kProperties> m_users{};
    };

    // A group without a title says something by what it holds, unless another does.
    std::vector<Group> withoutIdle(const Scene &scene, std::span<const Group> groups)
    {
        const auto isTitled = [&](const Group &group) {
            return !scene.groups[group.nodeGroup].title.empty();
        };
        const auto isAlike = [&](size_t a, size_t b) {
            return groups[a].begin == groups[b].begin && groups[a].end == groups[b].end;
        };
        std::vector<Group> kept;
        for (size_t i = 0; i < groups.size(); ++i) {
            const Group &group = groups[i];
            const bool isIdle = group.end - group.begin == 1
                    || (i + 1 < groups.size() && isAlike(i, i + 1))
                    || (i > 0 && isAlike(i, i - 1) && isTitled(groups[i - 1]));
            if (isTitled(group) || !isIdle)
                kept.push_back(group);
        }
        return kept;
    }

    // The groups of a scene as runs of its nodes: outer ones before inner ones.
    std::vector<Group> nodeGroupsOf(const Scene &scene)
    {
        const auto &nodes = scene.nodes;
        std::vector<Group> groups;
        std::vector<size_t> open; // of the result
        std::vector<Index> path; // from the outermost group to that of a node
        for (size_t i = 0; i <= nodes.size(); ++i) {
            if (i > 0 && i < nodes.size() && nodes[i].group == nodes[i - 1].group)
                continue;
            path.clear();
            Index group = i < nodes.size() ? nodes[i].group : kNone;
            for (; group != kNone; group = scene.groups[group].parent)
                path.insert(path.begin(), group);
            size_t same = 0;
            while (same < std::min(path.size(), open.size())
                   && groups[open[same]].nodeGroup == path[same])
                ++same;
            for (; open.size() > same; open.pop_back())
                groups[open.back()].end = i;
            for (; open.size() < path.size(); open.push_back(groups.size() - 1))
                groups.push_back({ i, i, {}, path[open.size()] });
        }
        return withoutIdle(scene, groups);
    }

    Style valuesOf(const Group &group, const Style &outer)
    {
        Style values = outer;
        for (size_t i = 0; i < kProperties; ++i) {
            if (group.values[i] != SvgStyles::kAny)
                values[i] = group.values[i];
        }
        return values;
    }

    class Grouping
    {
    public:
        Grouping(const Scene &scene, const StyleList &styles, std::span<const uint32_t> costs)
            : m_styles(styles), m_costs(costs), m_nodeGroups(nodeGroupsOf(scene)),
              m_next(m_nodeGroups.begin())
        {
        }

        // Goes through the groups of the scene within a run of elements. What all elements of one
        // share, it says, since it is there anyway.
        void divideScene(size_t begin, size_t end, const Style &outer)
        {
            for (size_t at = begin; at < end;) {
                if (m_next == m_nodeGroups.end() || m_next->begin > at) {
                    const size_t stop =
                            m_next == m_nodeGroups.end() ? end : std::min(end, m_next->begin);
                    divide(at, stop, outer);
                    at = stop;
                    continue;
                }
                Group group = *m_next++;
                at = group.end;
                Common common(m_costs, outer);
                for (size_t i = group.begin; i < group.end;) {
                    const size_t alike = m_styles.endOfAlike(i, group.end);
                    common.add(m_styles[i], uint32_t(alike - i));
                    i = alike;
                }
                group.values = common.shared();
                m_groups.push_back(group);
                divideScene(group.begin, group.end, valuesOf(group, outer));
            }
        }
        std::vector<Group> take() { return std::move(m_groups); }

    private:
        // Cuts a run of elements into groups, and each of these by what is left. Every level says
        // something more, so that there are no more levels than properties.
        void divide(size_t begin, size_t end, const Style &outer)
        {
            while (begin < end) {
                if (hasAllSaid(m_styles[begin], outer)) {
                    begin = m_styles.endOfAlike(begin, end);
                    continue;
                }
                const Group group = bestFrom(begin, end, outer);
                if (group.end == group.begin) {
                    ++begin;
                    continue;
                }
                m_groups.push_back(group);
                divide(group.begin, group.end, valuesOf(group, outer));
                begin = group.end;
            }
        }

        // Whether elements of a style say nothing themselves.
        bool hasAllSaid(const Style &style, const Style &outer) const
        {
            for (size_t i = 0; i < kProperties; ++i) {
                if (outer[i] == SvgStyles::kAny && m_costs[style[i]] > 0)
                    return false;
            }
            return true;
        }

        Group bestFrom(size_t begin, size_t end, const Style &outer) const
        {
            // How far to look for something better, so that the work stays in proportion.
            constexpr size_t kAhead = 1000;
            Group best{ begin, begin, {}, kNone };
            int64_t most = 0;
            Common common(m_costs, outer);
            common.add(m_styles[begin], 1);
            for (size_t i = begin + 1; i < end && common.isWorthMore();) {
                // Each of those that are alike saves as much as the others, but for the first.
                const size_t alike = m_styles.endOfAlike(i, end);
                common.add(m_styles[i], 1);
                const int64_t first = common.saved();
                if (alike > i + 1)
                    common.add(m_styles[i], uint32_t(alike - i - 1));
                const int64_t last = alike > i + 1 ? common.saved() : first;
                if (last > most) {
                    const int64_t each = last > first ? (last - first) / int64_t(alike - i - 1) : 1;
                    const size_t better = first > most ? i : i + 1 + size_t((most - first) / each);
                    if (better > best.end + kAhead + 1)
                        break;
                    most = last;
                    best = { begin, alike, common.shared(), kNone };
                } else if (alike > best.end + kAhead + 1) {
                    break;
                }
                i = alike;
            }
            const Style &own = m_styles[begin];
            const auto isSaid = [&](size_t i) {
                return outer[i] != SvgStyles::kAny || m_costs[own[i]] == 0;
            };
            if (best.end == best.begin && !isSaid(kClip)
                && (!isSaid(kMatrix) || own[kMatrix] == SvgStyles::kOwn)) {
                best = { begin, begin + 1, {}, kNone };
                best.values[kClip] = own[kClip];
            }
            return best;
        }

        const StyleList &m_styles;
        std::span<const uint32_t> m_costs;
        std::vector<Group> m_nodeGroups;
        std::vector<Group>::const_iterator m_next; // of them, which is still to come
        std::vector<Group> m_groups;
    };

} // namespace

std::vector<Group> groupsOf(const Scene &scene, const StyleList &styles,
                            std::span<const uint32_t> costs)
{
    Grouping grouping(scene, styles, costs);
    grouping.divideScene(0, styles.size(), Style{});
    return grouping.take();
}

} // namespace svgtool::picture
