#include "picture/svg/SvgGroups.h"

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
            for (size_t i = 0; i < kProperties; ++i)
                m_isOpen[i] = outer[i] == SvgStyles::kAny;
        }

        void add(const Style &style)
        {
            for (size_t i = 0; i < kProperties; ++i) {
                if (!m_isOpen[i] || style[i] == SvgStyles::kAny)
                    continue;
                if (m_values[i] == SvgStyles::kAny)
                    m_values[i] = style[i];
                m_isOpen[i] = m_values[i] == style[i];
                ++m_users[i];
            }
        }
        // Whether more elements can still share anything.
        bool isWorthMore() const
        {
            for (size_t i = 0; i < kProperties; ++i) {
                if (m_isOpen[i] && m_costs[m_values[i]] > 0)
                    return true;
            }
            return false;
        }
        int64_t saved() const
        {
            int64_t bytes = -kTags;
            for (size_t i = 0; i < kProperties; ++i) {
                if (isShared(i))
                    bytes += int64_t(m_users[i] - 1) * m_costs[m_values[i]];
            }
            return bytes;
        }
        Style shared() const
        {
            Style style{};
            for (size_t i = 0; i < kProperties; ++i) {
                if (isShared(i))
                    style[i] = m_values[i];
            }
            return style;
        }

    private:
        bool isShared(size_t i) const
        {
            // A transform stands within the clip, for it would turn that, too.
            const bool isUnclipped =
                    m_isClipSaid || (m_isOpen[kClip] && m_values[kClip] == SvgStyles::kDefault);
            if (i == kMatrix && !isUnclipped)
                return false;
            return m_isOpen[i] && m_users[i] > 1 && m_costs[m_values[i]] > 0;
        }

        std::span<const uint32_t> m_costs;
        bool m_isClipSaid; // by a group around
        Style m_values{};
        std::array<bool, kProperties> m_isOpen;
        std::array<uint32_t, kProperties> m_users{};
    };

    class Grouping
    {
    public:
        Grouping(std::span<const Style> styles, std::span<const uint32_t> costs)
            : m_styles(styles), m_costs(costs)
        {
        }

        // Cuts a run of elements into groups, and each of these by what is left. Every level says
        // something more, so that there are no more levels than properties.
        void divide(size_t begin, size_t end, const Style &outer)
        {
            while (begin < end) {
                const Group group = bestFrom(begin, end, outer);
                if (group.end == group.begin) {
                    ++begin;
                    continue;
                }
                m_groups.push_back(group);
                Style values = outer;
                for (size_t i = 0; i < kProperties; ++i) {
                    if (group.values[i] != SvgStyles::kAny)
                        values[i] = group.values[i];
                }
                divide(group.begin, group.end, values);
                begin = group.end;
            }
        }
        std::vector<Group> take() { return std::move(m_groups); }

    private:
        Group bestFrom(size_t begin, size_t end, const Style &outer) const
        {
            // How far to look for something better, so that the work stays in proportion.
            constexpr size_t kAhead = 1000;
            Group best{ begin, begin, {} };
            int64_t most = 0;
            Common common(m_costs, outer);
            common.add(m_styles[begin]);
            for (size_t i = begin + 1; i < end && common.isWorthMore(); ++i) {
                common.add(m_styles[i]);
                const int64_t saved = common.saved();
                if (saved > most) {
                    most = saved;
                    best = { begin, i + 1, common.shared() };
                } else if (i - best.end > kAhead) {
                    break;
                }
            }
            const Style &own = m_styles[begin];
            const auto isSaid = [&](size_t i) {
                return outer[i] != SvgStyles::kAny || m_costs[own[i]] == 0;
            };
            if (best.end == best.begin && !isSaid(kClip)
                && (!isSaid(kMatrix) || own[kMatrix] == SvgStyles::kOwn)) {
                best = { begin, begin + 1, {} };
                best.values[kClip] = own[kClip];
            }
            return best;
        }

        std::span<const Style> m_styles;
        std::span<const uint32_t> m_costs;
        std::vector<Group> m_groups;
    };

} // namespace

std::vector<Group> groupsOf(std::span<const Style> styles, std::span<const uint32_t> costs)
{
    Grouping grouping(styles, costs);
    grouping.divide(0, styles.size(), Style{});
    return grouping.take();
}

} // namespace svgtool::picture
