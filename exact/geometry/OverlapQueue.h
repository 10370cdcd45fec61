#pragma once

#include "exact/geometry/RgnPathUtil.h"

#include <deque>
#include <list>
#include <optional>
#include <vector>

namespace svgtool {

/// Horizontal lines waiting in list order to be compared with the lines after them.
///
/// Answers in logarithmic time what a scan of the list would: which is the first later line that
/// overlaps the first one without being equal to it. Lines are ranked by their place in the list.
/// A line that overlaps the first line F, but is not equal to it, is one of three:
///
/// - it begins left of the left end of F and ends right of it. Such lines are found in a segment
///   tree over the ends of all lines: a line is in the lists of the few nodes that make up the ends
///   strictly inside it, and the nodes above one end name all lines around that end. Lines join a
///   list at its back and are taken out of it wherever they are, so the front ranks first.
/// - it begins where F does, has a length, and ends elsewhere. The lines of one beginning are a
///   list, in which F is at the front; a cursor stays on the first line that ends elsewhere.
/// - it begins strictly inside F, with or without a length. A tree of minimums over the fronts of
///   those lists gives the first of a range of beginnings.
///
/// Only the second kind asks for a length, for which reason lines without one have their own lists.
class OverlapQueue
{
public:
    /// The first line and the first one after it that overlaps it and is not equal to it.
    struct Match
    {
        CHLine first;
        std::optional<CHLine> partner;
    };

    /// @param lines  each line appended later must end, on both sides, where one of these does
    /// @throw std::bad_alloc  also for more than 2^26 lines
    explicit OverlapQueue(const std::list<CHLine> &lines);

    /// Whether no line waits.
    bool isEmpty() const { return m_waitingCount == 0; }

    /// Puts @p line behind all others.
    void append(const CHLine &line);

    /// Takes out the first line and its partner, if it has one. The queue must not be empty.
    Match takeMatch();

private:
    using Index = quint32;
    static constexpr Index kNone = 0xFFFFFFFF;

    struct Entry
    {
        CHLine line;
        quint64 rank;
        Index left, right; ///< in m_ends
        Index previous, next; ///< in the list of lines of the same beginning
        Index firstLink; ///< its place in the first of the node lists it is in
        bool isWaiting;
    };

    /// The lines of one beginning, with a length or without.
    struct Group
    {
        Index first = kNone;
        Index last = kNone;
        /// What stands between first and this line ends where first does.
        Index other = kNone;
    };

    /// A line in the list of a node. Lists are rings around the link whose index is the node.
    struct Link
    {
        Index entry, previous, next;
        Index nextOfEntry;
    };

    Index endIndex(qint32 x, qint32 y) const;
    Index newEntry(const CHLine &line);
    Index groupOf(const Entry &entry) const;
    Index earlier(Index a, Index b) const;
    Index findPartner(Index first);
    void addToGroup(Index index);
    void addToNode(Index node, Index index);
    void remove(Index index);
    void removeFromGroup(Index index);
    void updateFirsts(Index group);

    std::vector<quint64> m_ends; ///< by y, then x; without repetition
    std::vector<Entry> m_entries;
    std::vector<Index> m_freeEntries;
    std::deque<Index> m_queue; ///< by rank; those taken out as partners stay until their turn
    std::vector<Group> m_groups;
    std::vector<Index> m_firsts; ///< tree of minimums, its leaves the first of each group
    std::vector<Link> m_links;
    Index m_freeLink = kNone;
    quint64 m_nextRank = 0;
    size_t m_waitingCount = 0;
};

} // namespace svgtool
