#include "picture/api/Report.h"

namespace svgtool {

static RecordFate fateOf(RecordOutcome outcome)
{
    switch (outcome) {
    case RecordOutcome::Drawn:
        return RecordFate::Drawn;
    case RecordOutcome::Approximated:
        return RecordFate::Approximated;
    case RecordOutcome::Skipped:
        return RecordFate::NotDone;
    case RecordOutcome::Neutral:
        break;
    }
    return RecordFate::Neutral;
}

static RecordLoss lossOf(const RecordType *type)
{
    // What a record of an unknown type would have done is unknown, too.
    if (type == nullptr)
        return RecordLoss::Drawing;
    switch (type->loss) {
    case Loss::Drawing:
        return RecordLoss::Drawing;
    case Loss::State:
        return RecordLoss::State;
    case Loss::Hint:
        break;
    }
    return RecordLoss::Hint;
}

static RecordsEnd endOf(StopReason reason)
{
    switch (reason) {
    case StopReason::EndRecord:
        return RecordsEnd::EndRecord;
    case StopReason::RecordCut:
        return RecordsEnd::RecordCut;
    case StopReason::BadSize:
        return RecordsEnd::BadSize;
    default:
        return RecordsEnd::DataEnded;
    }
}

PictureReport reportOf(const MetafileFacts &facts, const RecordTally &tally)
{
    static_assert(RecordLine::kOtherTypes == RecordTally::kOtherTypes);
    PictureReport report;
    for (const RecordTally::Line &line : tally.lines())
        report.records.push_back({ line.type, recordName(facts.format, line.type),
                                   fateOf(line.outcome),
                                   lossOf(findRecordType(facts.format, line.type)), line.count,
                                   line.firstOffset, line.why });
    const RecordTally::Stop &stop = tally.stop();
    report.end = endOf(stop.reason);
    report.endRecord = stop.record;
    report.endOffset = stop.offset;
    report.unreadRecords = facts.unread.records;
    const bool endsWithFile =
            stop.offset == facts.fileBytes && facts.fileBytes >= facts.headerBytes;
    report.isWhole = report.end == RecordsEnd::EndRecord
            ? report.unreadRecords == 0
            : report.end == RecordsEnd::DataEnded && endsWithFile;
    report.isHeaderWrong = hasWrongHeader(facts);
    return report;
}

} // namespace svgtool
