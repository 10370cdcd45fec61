#pragma once

#include "core/records/RecordResult.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace svgtool {

/// What became of a record.
enum class RecordOutcome {
    Drawn, ///< carried out: it painted, or its state is in force
    Approximated, ///< carried out in a way that may look different from GDI's
    Skipped, ///< nothing was done with it, and the picture may lack something
    Neutral, ///< nothing was done with it, and nothing can be missing: a comment or a hint
};
constexpr size_t kRecordOutcomes = 4;

/// Why a record loop ended.
enum class StopReason {
    None, ///< it did not begin, or an exception ended it
    EndRecord, ///< the end record
    CountReached, ///< as many records as an EMF header names
    LengthReached, ///< the length that a WMF header names; the record that reaches it is left out
    DataEnded, ///< fewer bytes are left than the head of a record has
    RecordCut, ///< the record is longer than the rest of the data
    BadSize, ///< the record's size does not hold its own head, or is above the header's maximum
};

/// Counts records by type and outcome, and keeps where a record loop ended.
///
/// What it keeps does not grow with the file: types beyond the first kLargestTypes share an entry.
/// @note One tally serves one conversion on one thread.
class RecordTally
{
public:
    /// How often records of one type had one outcome.
    struct Line
    {
        uint32_t type; ///< kOtherTypes for those that share an entry
        RecordOutcome outcome;
        uint64_t count;
        int64_t firstOffset; ///< in the file, of the first of them
    };
    /// The record at which a loop ended.
    struct Stop
    {
        StopReason reason = StopReason::None;
        uint64_t record =
                1; ///< counted from 1; the header of an EMF is a record, that of a WMF not
        int64_t offset = 0; ///< in the file
    };

    static constexpr uint32_t kOtherTypes = 0xFFFFFFFF;
    static constexpr size_t kLargestTypes = 256;

    /// The next record is number @p record and lies at @p offset.
    void begin(int64_t offset, uint64_t record)
    {
        m_stop.offset = offset;
        m_stop.record = record;
    }
    /// Counts the next record, @p bytes long.
    void note(uint32_t type, RecordOutcome outcome, uint32_t bytes)
    {
        const bool isKnown = m_types.size() < kLargestTypes || m_types.count(type) != 0;
        Entry &entry = m_types[isKnown ? type : kOtherTypes][size_t(outcome)];
        if (entry.count++ == 0)
            entry.firstOffset = m_stop.offset;
        m_stop.offset += bytes;
        ++m_stop.record;
    }
    /// The loop ends before the next record.
    void end(StopReason reason) { m_stop.reason = reason; }

    const Stop &stop() const { return m_stop; }

    /// All that was counted, by type and then by outcome.
    std::vector<Line> lines() const
    {
        std::vector<Line> lines;
        for (const auto &[type, entries] : m_types) {
            for (size_t i = 0; i < kRecordOutcomes; ++i) {
                if (entries[i].count > 0)
                    lines.push_back({ type, static_cast<RecordOutcome>(i), entries[i].count,
                                      entries[i].firstOffset });
            }
        }
        return lines;
    }

private:
    struct Entry
    {
        uint64_t count = 0;
        int64_t firstOffset = 0;
    };

    std::map<uint32_t, std::array<Entry, kRecordOutcomes>> m_types;
    Stop m_stop;
};

/// The outcome that all successes of a record type have, where it is not Drawn.
struct TypeOutcome
{
    uint32_t type;
    RecordOutcome outcome;
};

/// What the result of a handler means for a record of @p type; without a result nothing was done
/// with it. @p table holds the types that do not simply succeed.
template<class Table>
RecordOutcome recordOutcome(uint32_t type, std::optional<int32_t> result, const Table &table)
{
    const TypeOutcome *entry = nullptr;
    for (const TypeOutcome &row : table) {
        if (row.type == type)
            entry = &row;
    }
    if (!result)
        return entry != nullptr && entry->outcome == RecordOutcome::Neutral
                ? RecordOutcome::Neutral
                : RecordOutcome::Skipped;
    if (*result == RecordFailed)
        return RecordOutcome::Skipped;
    if (entry != nullptr)
        return entry->outcome;
    return *result == RecordApproximated ? RecordOutcome::Approximated : RecordOutcome::Drawn;
}

} // namespace svgtool
