#include "picture/api/Report.h"

#include <string_view>

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

static RecordTotals totalsOf(const std::vector<RecordLine> &records)
{
    RecordTotals totals;
    for (const RecordLine &line : records) {
        const bool isNotDone = line.fate == RecordFate::NotDone;
        if (line.loss == RecordLoss::Drawing && line.fate != RecordFate::Neutral)
            totals.drawing += line.count;
        if (line.fate == RecordFate::Approximated)
            totals.approximated += line.count;
        else if (isNotDone && line.loss == RecordLoss::Drawing)
            totals.drawingLost += line.count;
        else if (isNotDone && line.loss == RecordLoss::State)
            totals.stateIgnored += line.count;
    }
    return totals;
}

PictureReport reportOf(const MetafileFacts &facts, const RecordTally &tally)
{
    static_assert(RecordLine::kOtherTypes == RecordTally::kOtherTypes);
    PictureReport report;
    for (const RecordTally::Line &line : tally.lines()) {
        // Comments are no loss, but for the EMF+ records in them.
        const RecordLoss loss = std::string_view(line.why) == kBeyondLimit
                ? RecordLoss::Drawing
                : lossOf(findRecordType(facts.format, line.type));
        report.records.push_back({ line.type, recordName(facts.format, line.type),
                                   fateOf(line.outcome), loss, line.count, line.firstOffset,
                                   line.why });
    }
    report.totals = totalsOf(report.records);
    const RecordTally::Stop &stop = tally.stop();
    report.end = endOf(stop.reason);
    report.endRecord = stop.record;
    report.endOffset = stop.offset;
    report.unreadRecords = stop.offset > facts.unread.offset ? 0 : facts.unread.records;
    for (const RecordTally::Damage &damage : tally.damages())
        report.damaged.push_back({ damage.offset, damage.bytes });
    report.isWhole = hasAllRecords(facts) && report.damaged.empty();
    report.isHeaderWrong = hasWrongHeader(facts);
    return report;
}

const char *describe(PictureVerdict verdict) noexcept
{
    switch (verdict) {
    case PictureVerdict::Complete:
        return "complete";
    case PictureVerdict::Approximated:
        return "approximated";
    case PictureVerdict::Lost:
        return "lost";
    case PictureVerdict::Damaged:
        return "damaged";
    case PictureVerdict::Refused:
        break;
    }
    return "refused";
}

PictureVerdict verdictOf(const Picture &picture) noexcept
{
    const PictureReport &report = picture.report;
    if (picture.error != PictureError::None)
        return PictureVerdict::Refused;
    if (!report.isWhole || report.isHeaderWrong)
        return PictureVerdict::Damaged;
    if (report.totals.drawingLost > 0)
        return PictureVerdict::Lost;
    return report.totals.approximated + report.totals.stateIgnored > 0
            ? PictureVerdict::Approximated
            : PictureVerdict::Complete;
}

} // namespace svgtool
