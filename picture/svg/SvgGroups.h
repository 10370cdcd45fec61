#pragma once

#include "picture/svg/SvgStyle.h"

#include <span>
#include <vector>

namespace svgtool::picture {

/// The styles of elements one after the other. Neighbours are mostly alike, which is seen by their
/// numbers.
class StyleList
{
public:
    void reserve(size_t elements) { m_numbers.reserve(elements); }
    void add(const Style &style)
    {
        if (m_styles.empty() || m_styles.back() != style)
            m_styles.push_back(style);
        m_numbers.push_back(Index(m_styles.size() - 1));
    }
    size_t size() const { return m_numbers.size(); }
    const Style &operator[](size_t element) const { return m_styles[m_numbers[element]]; }
    /// Where those end, before @p end, that are like the first of them.
    size_t endOfAlike(size_t first, size_t end) const
    {
        const Index number = m_numbers[first];
        do
            ++first;
        while (first < end && m_numbers[first] == number);
        return first;
    }

private:
    std::vector<Style> m_styles;
    std::vector<Index> m_numbers; // of them, for each element
};

/// Elements in a row that stand in a group, and what it says for them.
struct Group
{
    size_t begin = 0, end = 0;
    Style values{}; ///< SvgStyles::kAny where it says nothing
    Index nodeGroup = kNone; ///< of the scene, whose title it has
};

/// The groups of a scene, and where others make its document shorter: those that begin earlier come
/// first, outer ones before inner ones. Groups lie wholly within each other or apart.
/// @param styles  of the scene's nodes
/// @param costs   of the values, in bytes
std::vector<Group> groupsOf(const Scene &scene, const StyleList &styles,
                            std::span<const uint32_t> costs);

} // namespace svgtool::picture
