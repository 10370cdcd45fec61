#include "cli/Convert.h"

#include "cli/Exact.h"
#include "exact/svg/SVGDisplay.h"
#include "exact/svgtool/SVGTool.h"

#include <new>

namespace svgtool {

namespace {

    QString reasonOf(qint32 result, const MetafileFacts &facts)
    {
        switch (result) {
        case SvgToolUnusableInput:
            return QStringLiteral("not enough memory");
        case SvgToolException:
            return QStringLiteral("an exception ended the conversion");
        case SvgToolInvalidEmf:
            return QStringLiteral("its EMF header names %1 bytes, but it has %2")
                    .arg(facts.headerBytes)
                    .arg(facts.fileBytes);
        case SvgToolInvalidWmf:
            return QStringLiteral("not a metafile: neither an EMF nor a WMF header");
        default:
            return QStringLiteral("the library gave the unknown result %1").arg(result);
        }
    }

    const char *reasonOf(StopReason reason)
    {
        switch (reason) {
        case StopReason::LengthReached:
            return "there the length ends that the header names";
        case StopReason::CountReached:
            return "there the number of records ends that the header names";
        case StopReason::DataEnded:
            return "the end record is missing";
        case StopReason::RecordCut:
            return "it is longer than the rest of the file";
        case StopReason::BadSize:
            return "its size makes no sense";
        default:
            return "the records are not read to their end";
        }
    }

    // What a damaged file lacks.
    struct Damage
    {
        QString text; ///< empty for a whole file
        bool isIncomplete = false; ///< records are missing, not only the header wrong
    };

    bool isMoved(const MetafileFacts &facts)
    {
        return facts.firstRecord != facts.namedFirstRecord;
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

    Damage damageOf(const MetafileFacts &facts, const RecordTally &records, bool isRepaired)
    {
        const RecordTally::Stop &stop = records.stop();
        const bool hasSize = facts.fileBytes == facts.headerBytes;
        const bool isWhole = stop.reason == StopReason::EndRecord;
        const QString sizes =
                QStringLiteral("%1 of %2 bytes, ").arg(facts.fileBytes).arg(facts.headerBytes);
        const QString header = isMoved(facts)
                ? QStringLiteral("first record found at offset %1 and not at %2, ")
                          .arg(facts.firstRecord)
                          .arg(facts.namedFirstRecord)
                : QString();
        const QString stopped = header
                + QStringLiteral("stopped at record %1 (offset %2)")
                          .arg(stop.record)
                          .arg(stop.offset);
        if (isWhole && facts.unread.records > 0)
            return { QStringLiteral("damaged, %1: %2").arg(stopped, unreadText(facts)), true };
        if (isWhole && isRepaired)
            return { QStringLiteral("damaged header, %1%2all %3")
                             .arg(hasSize ? QString() : sizes, header,
                                  QLatin1String(isMoved(facts) ? "from there on are read"
                                                               : "records are there")),
                     false };
        if (isWhole)
            return {};
        if (facts.fileBytes < facts.headerBytes)
            return { QStringLiteral("truncated, ") + sizes + stopped, true };
        // Some programs leave the end record out, or do not count it.
        const bool hasAll = stop.offset == facts.fileBytes
                || (stop.reason == StopReason::CountReached
                    && facts.records.stop().record == stop.record);
        if (hasAll && !isRepaired)
            return {};
        return {
            QStringLiteral("damaged, %1: %2").arg(stopped, QLatin1String(reasonOf(stop.reason))),
            true
        };
    }

    void checkSize(const QString &name, const QByteArray &bytes)
    {
        constexpr int kSmallestMetafile = 18;
        if (bytes.isEmpty())
            throw Failure{ name, QStringLiteral("is empty") };
        if (bytes.size() < kSmallestMetafile)
            throw Failure{ name,
                           QStringLiteral("has only %1 bytes; a metafile has at least %2")
                                   .arg(bytes.size())
                                   .arg(kSmallestMetafile) };
    }

    bool isSuccess(qint32 code)
    {
        return code == SvgToolEmfConverted || code == SvgToolWmfConverted;
    }

    // The library refuses an EMF for a size that is not that of its header, and ends early where a
    // header sets too low a limit or names a wrong place for the first record. A copy with the
    // header put right may give more.
    bool convertRepaired(const QByteArray &bytes, const RecordTally::Stop &stop, QByteArray &svg,
                         FileResult &result)
    {
        const bool isLimited = stop.reason == StopReason::BadSize
                || stop.reason == StopReason::LengthReached
                || stop.reason == StopReason::CountReached;
        if (stop.reason != StopReason::None && !isLimited && !isMoved(result.facts))
            return false;
        QByteArray copy = bytes;
        repairHeader({ copy.data(), size_t(copy.size()) }, result.facts);
        QByteArray repaired;
        RecordTally records;
        const qint32 code = convertExact(copy, repaired, &records);
        const bool isMore = records.stop().record > stop.record || isMoved(result.facts);
        if (!isSuccess(code) || !isMore)
            return false;
        svg.swap(repaired);
        result.records = records;
        return true;
    }

    // Converts the bytes as the library would, or, for a document to be shown, as far as possible.
    QByteArray convertBytes(const QByteArray &bytes, const Options &options, FileResult &result)
    {
        checkSize(result.input, bytes);
        result.facts = inspectMetafile({ bytes.constData(), bytes.size() });
        QByteArray svg;
        const qint32 code = convertExact(bytes, svg, &result.records);
        const bool mayRepair = !options.isExact && (isSuccess(code) || code == SvgToolInvalidEmf);
        const RecordTally::Stop stop = code == SvgToolInvalidEmf
                ? RecordTally::Stop{ StopReason::None, 0, 0 }
                : result.records.stop();
        const bool isRepaired = mayRepair && convertRepaired(bytes, stop, svg, result);
        if (!isSuccess(code) && !isRepaired)
            throw Failure{ result.input, reasonOf(code, result.facts) };
        for (const RecordTally::Line &line : result.records.lines())
            result.skipped += line.outcome == RecordOutcome::Skipped ? line.count : 0;
        result.status = FileStatus::Converted;
        if (options.isExact)
            return svg;

        const Damage damage = damageOf(result.facts, result.records, isRepaired);
        DisplayOptions display;
        display.width = options.width;
        display.height = options.height;
        display.scale = options.scale;
        if (!damage.text.isEmpty()) {
            result.status = FileStatus::Damaged;
            result.message = result.input + QLatin1String(": ") + damage.text;
        }
        if (damage.isIncomplete)
            display.comment =
                    QByteArrayLiteral("Incomplete: the metafile is ") + damage.text.toUtf8();
        return displayableSvg(svg, display);
    }

    void write(const Job &job, const StandardStreams &streams, const QByteArray &document,
               FileStatus status)
    {
        if (!job.hasMadeName())
            return writeOutput(job.output, streams.out, document);
        OutputFile file(job.output, job.namedLength);
        file.write(document);
        // Not newer than its metafile, this one is never up to date: each run tells the damage.
        if (status == FileStatus::Damaged)
            file.takeTimeOf(job.input);
        file.finish();
    }

    void convertOrThrow(const Job &job, const Options &options, const StandardStreams &streams,
                        FileResult &result)
    {
        if (!job.problem.isEmpty())
            throw Failure{ result.input, job.problem };
        const bool isDone = job.hasMadeName() && options.writes && !options.isForced
                && isNewer(job.output, job.input);
        if (isDone && !options.keepsDocuments) {
            result.status = FileStatus::UpToDate;
            return;
        }
        QByteArray document = convertBytes(readInput(job.input, streams.in), options, result);
        if (document.isEmpty())
            throw Failure{ result.input, QStringLiteral("the document is empty") };
        if (!job.output.empty() && !isDone)
            write(job, streams, document, result.status);
        if (options.keepsDocuments)
            result.document.swap(document);
    }

} // namespace

FileResult convertFile(const Job &job, const Options &options, const StandardStreams &streams)
{
    FileResult result;
    result.input = shownInput(job.input);
    result.output = shownName(job.output);
    const auto fail = [&result](const QString &message) {
        result.status = FileStatus::Failed;
        result.message = message;
    };
    try {
        convertOrThrow(job, options, streams, result);
    } catch (const Failure &failure) {
        fail(failure.file + QLatin1String(": ") + failure.reason);
    } catch (const std::bad_alloc &) {
        fail(result.input + QLatin1String(": not enough memory"));
    }
    return result;
}

} // namespace svgtool
