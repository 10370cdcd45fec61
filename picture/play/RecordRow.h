#pragma once

#include "core/records/RecordRecovery.h"
#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <span>
#include <vector>

namespace svgtool::picture {

/// What is done with records of one type.
struct RecordRow
{
    uint32_t type;
    Played (*play)(DeviceContext &context, ByteView record);
    Played otherwise = kDone; ///< what becomes of it where there is no function
};

/// Nothing in the picture depends on the record.
inline Played neutral(DeviceContext &, ByteView)
{
    return kNeutral;
}

/// Plays a record by its row in a list that is sorted by type.
inline Played playByRow(std::span<const RecordRow> rows, DeviceContext &context, uint32_t type,
                        ByteView record)
{
    const auto row = std::ranges::lower_bound(rows, type, {}, &RecordRow::type);
    if (row == rows.end() || row->type != type)
        return notDone("its type is not known");
    if (row->play == nullptr)
        return row->otherwise;
    const Played played = row->play(context, record);
    return played.isDone() ? context.shortfall() : played;
}

/// Plays the records that are left, up to the end record.
/// @param number  of the first of them
/// @param play    gives what became of a record
/// @param tally   what became of each record is counted there, if not null
template<class Play>
void playRecords(RecordRecovery records, uint32_t number, DeviceContext &context,
                 RecordTally *tally, Play play)
{
    const auto noteDamage = [&] {
        if (tally != nullptr && records.damage().bytes > 0)
            tally->noteDamage(records.damage());
    };
    // What may come out exact is counted when that is known.
    struct Pending
    {
        Played played;
        uint32_t type, number;
        int64_t offset;
    };
    std::vector<Pending> pending;
    while (const auto record = records.next()) {
        context.setRecord(number);
        if (tally != nullptr)
            tally->begin(record->offset, number);
        const Played played = play(*record);
        if (tally != nullptr && context.isProvisional(played))
            pending.push_back({ played, record->type, number, record->offset });
        else if (tally != nullptr)
            tally->note(record->type, played.outcome, record->bytes.size, played.why);
        noteDamage();
        // At one that is cut they end.
        number += records.stop() == StopReason::None ? 1U : 0U;
    }
    if (tally == nullptr)
        return;
    noteDamage();
    for (const auto &[played, type, recordNumber, offset] : pending) {
        const Played last = context.isInexact(recordNumber) ? played : kDone;
        tally->noteWithin(type, last.outcome, offset, last.why);
    }
    tally->begin(records.offset(), number);
    tally->end(records.stop());
}

} // namespace svgtool::picture
