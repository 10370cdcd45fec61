#include "cli/Convert.h"

#include "cli/Damage.h"
#include "cli/Exact.h"
#include "cli/Picture.h"
#include "cli/Report.h"
#include "core/base/Gzip.h"
#include "exact/svgtool/SVGTool.h"
#include "picture/api/Report.h"

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

    QByteArray unpacked(const QString &name, const QByteArray &bytes)
    {
        const ByteView file{ bytes.constData(), bytes.size() };
        if (!isGzip(file))
            return bytes;
        std::string contents;
        switch (unpackGzip(file, contents)) {
        case Unpacking::Done:
            return QByteArray::fromStdString(contents);
        case Unpacking::TooLarge:
            throw Failure{ name,
                           QStringLiteral("its gzip data unpack to more than 32 MiB and 32 "
                                          "times their length") };
        case Unpacking::Damaged:
            break;
        }
        throw Failure{ name, QStringLiteral("its gzip data are damaged") };
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

    // Converts as the library does, to the byte.
    QByteArray exactDocument(const QByteArray &bytes, FileResult &result)
    {
        QByteArray svg;
        RecordTally records;
        const qint32 code = exactPath().convert(bytes, svg, &records);
        if (!isSuccess(code))
            throw Failure{ result.input, reasonOf(code, result.facts) };
        result.report = reportOf(result.facts, records);
        result.ending = records.stop().reason;
        return svg;
    }

    // Draws all that can be read, whatever limits the header sets.
    QByteArray pictureDocument(const QByteArray &bytes, const Options &options, FileResult &result)
    {
        // The list of records is the exact path's.
        QByteArray unused;
        if (!options.dumpFile.empty())
            exactPath().convert(bytes, unused, nullptr);
        const Damage damage = damageOf({ bytes.constData(), bytes.size() }, result.facts);
        QByteArray comment;
        if (damage.isIncomplete)
            comment = "Incomplete: the metafile is " + damage.text.toUtf8();
        if (!damage.text.isEmpty()) {
            result.status = FileStatus::Damaged;
            result.message = result.input + QLatin1String(": ") + damage.text;
        }
        QByteArray document = drawPicture(bytes, options, comment, result);
        result.loss = lossText(result);
        return document;
    }

    QByteArray convertBytes(const QByteArray &bytes, const Options &options, FileResult &result)
    {
        checkSize(result.input, bytes);
        result.facts = inspectMetafile({ bytes.constData(), bytes.size() });
        if (result.facts.format == MetafileFormat::Unknown && !options.isExact)
            throw Failure{ result.input, reasonOf(SvgToolInvalidWmf, result.facts) };
        result.status = FileStatus::Converted;
        return options.isExact ? exactDocument(bytes, result)
                               : pictureDocument(bytes, options, result);
    }

    void write(const Job &job, const StandardStreams &streams, const QByteArray &document,
               const FileResult &result)
    {
        if (!job.hasMadeName() && endingOf(job.output) == "svgz")
            return writeOutput(
                    job.output, streams.out,
                    QByteArray::fromStdString(packGzip({ document.constData(), document.size() })));
        if (!job.hasMadeName())
            return writeOutput(job.output, streams.out, document);
        OutputFile file(job.output, job.namedLength);
        file.write(document);
        // Not newer than its metafile, this one is never up to date: each run tells what is wrong.
        if (result.status == FileStatus::Damaged || !result.loss.isEmpty())
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
        const QByteArray metafile = unpacked(result.input, readInput(job.input, streams.in));
        QByteArray document = convertBytes(metafile, options, result);
        if (document.isEmpty())
            throw Failure{ result.input, QStringLiteral("the document is empty") };
        if (!job.output.empty() && !isDone)
            write(job, streams, document, result);
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
        fail((failure.file.isEmpty() ? result.input : failure.file) + QLatin1String(": ")
             + failure.reason);
    } catch (const std::bad_alloc &) {
        fail(result.input + QLatin1String(": not enough memory"));
    }
    return result;
}

} // namespace svgtool
