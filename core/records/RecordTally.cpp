#include "core/records/RecordTally.h"

#include <algorithm>

namespace svgtool {

RecordTally::Counts &RecordTally::findCounts(uint32_t type)
{
    constexpr size_t kLowBytes = 256;
    auto entry = std::ranges::find(m_entries, type, &Entry::type);
    if (entry == m_entries.end() && m_entries.size() >= kLargestTypes) {
        type = kOtherTypes;
        entry = std::ranges::find(m_entries, type, &Entry::type);
    }
    if (entry == m_entries.end())
        entry = m_entries.insert(entry, { type, {} });
    m_latest.resize(kLowBytes);
    m_latest[type & 0xFF] = static_cast<uint16_t>(entry - m_entries.begin());
    return entry->counts;
}

void RecordTally::lose(uint32_t type, int64_t offset, const char *why)
{
    using enum RecordOutcome;
    Counts &counts = countsOf(type);
    for (const RecordOutcome before : { Drawn, Approximated, Neutral }) {
        if (counts[size_t(before)].count > 0) {
            --counts[size_t(before)].count;
            break;
        }
    }
    noteWithin(type, RecordOutcome::Skipped, offset, why);
}

void RecordTally::noteDamage(const Damage &damage)
{
    if (m_damages.size() < kMostDamages)
        m_damages.push_back(damage);
    else
        m_damages.back().bytes = damage.offset + damage.bytes - m_damages.back().offset;
}

std::vector<RecordTally::Line> RecordTally::lines() const
{
    std::vector<Line> lines;
    for (const Entry &entry : m_entries) {
        for (size_t i = 0; i < kRecordOutcomes; ++i) {
            const Count &count = entry.counts[i];
            if (count.count > 0)
                lines.push_back({ entry.type, static_cast<RecordOutcome>(i), count.count,
                                  count.firstOffset, count.why });
        }
    }
    std::ranges::stable_sort(lines, {}, &Line::type);
    return lines;
}

} // namespace svgtool
