#pragma once

#include "core/records/MetafileFacts.h"
#include "core/records/RecordHead.h"
#include "core/records/RecordIterator.h"

namespace svgtool {

/// Goes from record to record as RecordIterator does, and past what is damaged: for pictures, of
/// which all that can be drawn is wanted.
///
/// A record is taken as it says as long as something sensible stands behind it. Where not, they go
/// on at the next place behind its head from which a chain of plausible records leads on, and the
/// record, if its type is known, gets the bytes that it may have. So one whose size is wrong is
/// still there, and loses no other; and the last one of a file that is cut is as long as the file.
/// Of a type that is unknown the lowest byte counts, if a record like it is as long, and what holds
/// EMF+ records is a comment.
/// An end record before the end that the header names ends them only if no chain lies behind it.
///
/// Records begin at or behind where the ones before them end. Each byte is looked at once as a
/// place to go on from, so that all of it takes time in proportion to the file.
class RecordRecovery
{
public:
    /// @param file  the whole file of @p facts, which outlives this
    RecordRecovery(ByteView file, const MetafileFacts &facts);

    /// The next record; nothing where they end, and from there on.
    std::optional<Record> next();

    /// Why they end, once next() gives nothing, or has given a record that is cut.
    StopReason stop() const { return m_stop; }
    /// Of the record to come; of the one at which they end.
    int64_t offset() const { return m_offset; }
    /// What was damaged up to the latest record: bytes that are no record's, and the record if its
    /// size or type is a guess. Empty where all is well.
    const RecordTally::Damage &damage() const { return m_damage; }

private:
    bool isSound(int64_t place) const;
    bool isChain(int64_t place) const;
    int64_t findChain();
    std::optional<Record> find();
    std::optional<Record> recover(const RecordHead &head);
    Record take(uint32_t type, int64_t end);
    void skipTo(int64_t place);

    MetafileFormat m_format;
    ByteView m_file;
    int64_t m_namedEnd; ///< of the file, by its header
    bool m_isWhole; ///< so that nothing need be looked at
    int64_t m_offset;
    int64_t m_chain = 0; ///< found last; no other lies between where it was looked for and there
    RecordTally::Damage m_damage;
    StopReason m_stop = StopReason::None;
};

} // namespace svgtool
