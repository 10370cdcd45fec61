#include "exact/geometry/OverlapQueue.h"

#include <algorithm>
#include <new>

namespace svgtool {

// Nothing here is traced: these calls are steps of ConvertRgnDataToPath, which is.

// Orders points by y, then x.
static quint64 endKey(qint32 x, qint32 y)
{
    constexpr quint32 kSign = 0x80000000;
    return quint64(quint32(y) ^ kSign) << 32 | (quint32(x) ^ kSign);
}

OverlapQueue::OverlapQueue(const std::list<CHLine> &lines)
{
    // Keeps every index, that of the links included, within 32 bits.
    constexpr size_t kMaxLines = size_t(1) << 26;
    if (lines.size() > kMaxLines)
        throw std::bad_alloc();
    m_ends.reserve(2 * lines.size());
    for (const CHLine &line : lines) {
        m_ends.push_back(endKey(line.x1, line.y1));
        m_ends.push_back(endKey(line.x2, line.y1));
    }
    std::sort(m_ends.begin(), m_ends.end());
    m_ends.erase(std::unique(m_ends.begin(), m_ends.end()), m_ends.end());

    m_groups.resize(2 * m_ends.size());
    m_firsts.assign(2 * m_groups.size(), kNone);
    const auto nodeCount = static_cast<Index>(2 * m_ends.size());
    m_links.reserve(nodeCount);
    for (Index node = 0; node < nodeCount; ++node)
        m_links.push_back({ kNone, node, node, kNone });
    m_entries.reserve(lines.size());
    for (const CHLine &line : lines)
        append(line);
}

void OverlapQueue::append(const CHLine &line)
{
    const Index index = newEntry(line);
    m_queue.push_back(index);
    ++m_waitingCount;
    addToGroup(index);

    // The ends strictly inside the line, as few nodes of the tree as make them up.
    const auto leaves = static_cast<Index>(m_ends.size());
    Index low = leaves + m_entries[index].left + 1;
    Index high = leaves + m_entries[index].right;
    for (; low < high; low /= 2, high /= 2) {
        if (low % 2 != 0)
            addToNode(low++, index);
        if (high % 2 != 0)
            addToNode(--high, index);
    }
}

OverlapQueue::Match OverlapQueue::takeMatch()
{
    while (!m_entries[m_queue.front()].isWaiting) {
        m_freeEntries.push_back(m_queue.front());
        m_queue.pop_front();
    }
    const Index first = m_queue.front();
    const Index partner = findPartner(first);
    Match match{ m_entries[first].line, std::nullopt };
    remove(first);
    if (partner != kNone) {
        match.partner = m_entries[partner].line;
        remove(partner);
    }
    return match;
}

OverlapQueue::Index OverlapQueue::endIndex(qint32 x, qint32 y) const
{
    const auto end = std::lower_bound(m_ends.begin(), m_ends.end(), endKey(x, y));
    return static_cast<Index>(end - m_ends.begin());
}

OverlapQueue::Index OverlapQueue::newEntry(const CHLine &line)
{
    const Entry entry{
        line,  m_nextRank++, endIndex(line.x1, line.y1), endIndex(line.x2, line.y1), kNone, kNone,
        kNone, true
    };
    if (m_freeEntries.empty()) {
        m_entries.push_back(entry);
        return static_cast<Index>(m_entries.size() - 1);
    }
    const Index index = m_freeEntries.back();
    m_freeEntries.pop_back();
    m_entries[index] = entry;
    return index;
}

OverlapQueue::Index OverlapQueue::groupOf(const Entry &entry) const
{
    return 2 * entry.left + (entry.left == entry.right ? 0 : 1);
}

OverlapQueue::Index OverlapQueue::earlier(Index a, Index b) const
{
    if (a == kNone || b == kNone)
        return a == kNone ? b : a;
    return m_entries[a].rank < m_entries[b].rank ? a : b;
}

OverlapQueue::Index OverlapQueue::findPartner(Index first)
{
    const Entry &entry = m_entries[first];
    Index partner = kNone;

    // Around the left end.
    for (auto node = static_cast<Index>(m_ends.size()) + entry.left; node > 0; node /= 2)
        partner = earlier(partner, m_links[m_links[node].next].entry);
    if (entry.left == entry.right)
        return partner;

    // From the same beginning. The cursor only ever moves forward, also when another line comes to
    // the front: that one either stood before the cursor or is the line under it.
    Index &other = m_groups[groupOf(entry)].other;
    while (other != kNone && m_entries[other].right == entry.right)
        other = m_entries[other].next;
    partner = earlier(partner, other);

    // From a beginning inside.
    const auto leaves = static_cast<Index>(m_groups.size());
    Index low = leaves + 2 * (entry.left + 1);
    Index high = leaves + 2 * entry.right;
    for (; low < high; low /= 2, high /= 2) {
        if (low % 2 != 0)
            partner = earlier(partner, m_firsts[low++]);
        if (high % 2 != 0)
            partner = earlier(partner, m_firsts[--high]);
    }
    return partner;
}

void OverlapQueue::addToGroup(Index index)
{
    Entry &entry = m_entries[index];
    Group &group = m_groups[groupOf(entry)];
    entry.previous = group.last;
    group.last = index;
    if (group.other == kNone)
        group.other = index;
    if (entry.previous != kNone) {
        m_entries[entry.previous].next = index;
        return;
    }
    group.first = index;
    updateFirsts(groupOf(entry));
}

void OverlapQueue::removeFromGroup(Index index)
{
    const Entry &entry = m_entries[index];
    Group &group = m_groups[groupOf(entry)];
    if (group.other == index)
        group.other = entry.next;
    if (entry.next != kNone)
        m_entries[entry.next].previous = entry.previous;
    else
        group.last = entry.previous;
    if (entry.previous != kNone) {
        m_entries[entry.previous].next = entry.next;
        return;
    }
    group.first = entry.next;
    updateFirsts(groupOf(entry));
}

void OverlapQueue::updateFirsts(Index group)
{
    Index node = static_cast<Index>(m_groups.size()) + group;
    m_firsts[node] = m_groups[group].first;
    for (node /= 2; node > 0; node /= 2) {
        const size_t left = size_t(2) * node;
        m_firsts[node] = earlier(m_firsts[left], m_firsts[left + 1]);
    }
}

void OverlapQueue::addToNode(Index node, Index index)
{
    Index link = m_freeLink;
    if (link != kNone) {
        m_freeLink = m_links[link].nextOfEntry;
    } else {
        link = static_cast<Index>(m_links.size());
        m_links.emplace_back();
    }
    Entry &entry = m_entries[index];
    m_links[link] = { index, m_links[node].previous, node, entry.firstLink };
    m_links[m_links[node].previous].next = link;
    m_links[node].previous = link;
    entry.firstLink = link;
}

void OverlapQueue::remove(Index index)
{
    removeFromGroup(index);
    Index link = m_entries[index].firstLink;
    while (link != kNone) {
        const Link removed = m_links[link];
        m_links[removed.previous].next = removed.next;
        m_links[removed.next].previous = removed.previous;
        m_links[link].nextOfEntry = m_freeLink;
        m_freeLink = link;
        link = removed.nextOfEntry;
    }
    m_entries[index].isWaiting = false;
    --m_waitingCount;
}

} // namespace svgtool
