#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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

/// Why a walk over records ended.
enum class StopReason {
    None, ///< it did not begin, or an exception ended it
    EndRecord, ///< the end record
    CountReached, ///< as many records as an EMF header names
    LengthReached, ///< the length that a WMF header names; the record that reaches it is left out
    DataEnded, ///< fewer bytes are left than the head of a record has
    RecordCut, ///< the record is longer than the rest of the data
    BadSize, ///< the record's size does not hold its own head, or is above the header's maximum
};

/// Counts records by type and outcome, and keeps where a walk over them ended.
///
/// What it keeps does not grow with the file: types beyond the first kLargestTypes share an entry.
/// Before the first record it takes no memory.
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
        const char *why; ///< what was said of the first of them; empty where nothing was
    };
    /// The record at which a walk ended.
    struct Stop
    {
        StopReason reason = StopReason::None;
        uint64_t record =
                1; ///< counted from 1; the header of an EMF is a record, that of a WMF not
        int64_t offset = 0; ///< in the file
    };

    /// Bytes in which records could not be told apart as they should.
    struct Damage
    {
        int64_t offset = 0; ///< in the file
        int64_t bytes = 0;
    };

    static constexpr uint32_t kOtherTypes = 0xFFFFFFFF;
    static constexpr size_t kLargestTypes = 256;
    static constexpr size_t kMostDamages = 64;

    /// The next record is number @p record and lies at @p offset.
    void begin(int64_t offset, uint64_t record)
    {
        m_stop.offset = offset;
        m_stop.record = record;
    }
    /// Counts the next record, @p bytes long. May throw std::bad_alloc.
    /// @param why  a literal: why it has this outcome
    void note(uint32_t type, RecordOutcome outcome, int64_t bytes, const char *why = "")
    {
        noteWithin(type, outcome, m_stop.offset, why);
        m_stop.offset += bytes;
        ++m_stop.record;
    }
    /// Counts a record that lies within the next one, or one before it. May throw std::bad_alloc.
    /// @param offset  in the file
    void noteWithin(uint32_t type, RecordOutcome outcome, int64_t offset, const char *why)
    {
        Count &count = countsOf(type)[size_t(outcome)];
        if (count.count++ == 0 || offset < count.firstOffset) {
            count.firstOffset = offset;
            count.why = why;
        }
    }
    /// A record that was counted as anything else turns out to be skipped. May throw
    /// std::bad_alloc.
    /// @param offset  in the file
    void lose(uint32_t type, int64_t offset, const char *why);
    /// Records went on behind damaged bytes. What is beyond kMostDamages counts with the last one.
    /// May throw std::bad_alloc.
    void noteDamage(const Damage &damage);
    /// The walk ends before the next record.
    void end(StopReason reason) { m_stop.reason = reason; }

    const Stop &stop() const { return m_stop; }
    /// In the order of the file.
    const std::vector<Damage> &damages() const { return m_damages; }

    /// All that was counted, by type and then by outcome.
    std::vector<Line> lines() const;

private:
    struct Count
    {
        uint64_t count = 0;
        int64_t firstOffset = 0;
        const char *why = "";
    };
    using Counts = std::array<Count, kRecordOutcomes>;
    struct Entry
    {
        uint32_t type;
        Counts counts;
    };

    // The low byte tells nearly all types of a format apart, so the entry last used with it is
    // nearly always the one.
    Counts &countsOf(uint32_t type)
    {
        if (!m_latest.empty()) [[likely]] {
            Entry &entry = m_entries[m_latest[type & 0xFF]];
            if (entry.type == type) [[likely]]
                return entry.counts;
        }
        return findCounts(type);
    }
    Counts &findCounts(uint32_t type);

    std::vector<Entry> m_entries; ///< in the order in which their types came
    std::vector<uint16_t> m_latest; ///< by the low byte of a type, the entry used last
    std::vector<Damage> m_damages;
    Stop m_stop;
};

} // namespace svgtool
