#include "cli/Damage.h"

#include "core/records/RecordRecovery.h"

namespace svgtool {

namespace {

    // Whether a header names another place of the first record than there is.
    bool isMoved(const MetafileFacts &facts)
    {
        return facts.firstRecord != facts.namedFirstRecord;
    }

    const char *reasonOf(StopReason reason)
    {
        switch (reason) {
        case StopReason::DataEnded:
            return "the end record is missing";
        case StopReason::RecordCut:
            return "it is longer than the rest of the file";
        case StopReason::BadSize:
            return "its size makes no sense";
        case StopReason::EndRecord:
            return "it is the end record, and not the whole of it is there";
        default:
            return "the records are not read to their end";
        }
    }

    // What lies behind an end record that is not the last record.
    QString unreadText(const MetafileFacts &facts)
    {
        return QStringLiteral("an end record with %1 %2 behind it, %3 bytes from offset %4 on")
                .arg(facts.unread.records)
                .arg(QLatin1String(facts.unread.records == 1 ? "record" : "records"))
                .arg(facts.fileBytes - facts.unread.offset)
                .arg(facts.unread.offset);
    }

    // Where records end that are damaged, and go on behind; empty where none do.
    QString damagedText(ByteView file, const MetafileFacts &facts)
    {
        RecordTally::Damage first;
        qint64 places = 0;
        RecordRecovery records(file, facts);
        for (bool goesOn = true; goesOn;) {
            goesOn = records.next().has_value();
            if (records.damage().bytes > 0 && places++ == 0)
                first = records.damage();
        }
        const QString text = QStringLiteral("damaged, went on behind %1 bytes at offset %2")
                                     .arg(first.bytes)
                                     .arg(first.offset);
        return places == 0    ? QString()
                : places == 1 ? text
                              : text + QStringLiteral(" and in %1 more places").arg(places - 1);
    }

} // namespace

Damage damageOf(ByteView file, const MetafileFacts &facts)
{
    const RecordTally::Stop &stop = facts.records.stop();
    const bool isHeaderWrong = hasWrongHeader(facts);
    const bool hasSize = facts.fileBytes == facts.headerBytes;
    const bool isWhole = stop.reason == StopReason::EndRecord && !facts.isEndCut;
    const QString sizes =
            QStringLiteral("%1 of %2 bytes, ").arg(facts.fileBytes).arg(facts.headerBytes);
    const QString header = isMoved(facts)
            ? QStringLiteral("first record found at offset %1 and not at %2, ")
                      .arg(facts.firstRecord)
                      .arg(facts.namedFirstRecord)
            : QString();
    const QString stopped = header
            + QStringLiteral("stopped at record %1 (offset %2)").arg(stop.record).arg(stop.offset);
    const QString damaged = damagedText(file, facts);
    if (!damaged.isEmpty())
        return { damaged, true };
    if (isWhole && facts.unread.records > 0)
        return { QStringLiteral("damaged, %1: %2").arg(stopped, unreadText(facts)), true };
    if (isWhole && isHeaderWrong)
        return { QStringLiteral("damaged header, %1%2all %3")
                         .arg(hasSize ? QString() : sizes, header,
                              QLatin1String(isMoved(facts) ? "from there on are read"
                                                           : "records are there")),
                 false };
    if (isWhole)
        return {};
    if (facts.fileBytes < facts.headerBytes)
        return { QStringLiteral("truncated, ") + sizes + stopped, true };
    if (hasAllRecords(facts) && !isHeaderWrong)
        return {};
    return { QStringLiteral("damaged, %1: %2").arg(stopped, QLatin1String(reasonOf(stop.reason))),
             true };
}

} // namespace svgtool
