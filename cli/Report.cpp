#include "cli/Report.h"

#include "cli/Files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace svgtool {

const char *word(FileStatus status)
{
    static constexpr std::array<const char *, kFileStatuses> kWords{ "not tried", "converted",
                                                                     "damaged", "up to date",
                                                                     "failed" };
    return kWords[size_t(status)];
}

const char *word(MetafileFormat format)
{
    static constexpr const char *kWords[] = { "unknown", "EMF", "WMF", "placeable WMF" };
    return kWords[size_t(format)];
}

namespace {

    const char *word(RecordOutcome outcome)
    {
        static constexpr std::array<const char *, kRecordOutcomes> kWords{ "drawn", "approximated",
                                                                           "skipped", "neutral" };
        return kWords[size_t(outcome)];
    }

    const char *word(StopReason reason)
    {
        static constexpr const char *kWords[] = { "nothing read",   "end record",  "record count",
                                                  "header length",  "end of data", "record cut off",
                                                  "bad record size" };
        return kWords[size_t(reason)];
    }

    // What is missing comes first.
    std::vector<RecordTally::Line> sortedLines(const RecordTally &records)
    {
        const auto rank = [](const RecordTally::Line &line) {
            static constexpr int kRanks[] = { 2, 1, 0, 3 };
            return kRanks[size_t(line.outcome)];
        };
        std::vector<RecordTally::Line> lines = records.lines();
        std::stable_sort(lines.begin(), lines.end(),
                         [&rank](const auto &a, const auto &b) { return rank(a) < rank(b); });
        return lines;
    }

    // Whether the records were walked; if not, there is nothing to say of them.
    bool hasRecords(const FileResult &result)
    {
        return result.status == FileStatus::Converted || result.status == FileStatus::Damaged;
    }

    QByteArray boxText(const HeaderBox &box, const char *unit)
    {
        return QByteArray::number(box.left) + ',' + QByteArray::number(box.top) + " to "
                + QByteArray::number(box.right) + ',' + QByteArray::number(box.bottom) + ' ' + unit;
    }

    QByteArray sizeText(const qint32 (&size)[2], const char *unit)
    {
        return QByteArray::number(size[0]) + " x " + QByteArray::number(size[1]) + ' ' + unit;
    }

    bool isOfEmbeddedEmf(const FileResult &result)
    {
        return result.drawnFormat != result.facts.format;
    }

    // As the document writes it.
    double rounded(double pixels)
    {
        return std::round(pixels * 1000) / 1000;
    }

    QByteArray pictureText(const FileResult &result)
    {
        constexpr int kDigits = 9;
        return QByteArray::number(rounded(result.width), 'g', kDigits) + " x "
                + QByteArray::number(rounded(result.height), 'g', kDigits) + " pixels"
                + (result.sizeGuess.isEmpty() ? QByteArray()
                                              : ", a guess: " + result.sizeGuess.toUtf8());
    }

    QByteArray factsText(const FileResult &result)
    {
        const MetafileFacts &facts = result.facts;
        QByteArray text;
        const auto row = [&text](const char *name, const QByteArray &value) {
            text += "  " + QByteArray(name).leftJustified(9) + value + '\n';
        };
        row("format", word(facts.format));
        if (facts.format == MetafileFormat::Unknown)
            return text;
        row("size",
            QByteArray::number(qint64(facts.fileBytes)) + " bytes, by its header "
                    + QByteArray::number(qint64(facts.headerBytes)));
        if (facts.format == MetafileFormat::Emf) {
            row("bounds", boxText(facts.bounds, "pixels"));
            row("frame", boxText(facts.frame, "x 0.01 mm"));
            row("device",
                sizeText(facts.devicePixels, "pixels, ") + sizeText(facts.deviceMillimeters, "mm"));
        } else if (facts.format == MetafileFormat::PlaceableWmf) {
            row("bounds",
                boxText(facts.bounds, "units, ") + QByteArray::number(facts.unitsPerInch)
                        + " to an inch");
        }
        if (result.width > 0)
            row("picture", pictureText(result));
        const RecordTally::Stop &stop = facts.records.stop();
        row("records",
            QByteArray::number(quint64(stop.record)) + " up to the " + word(stop.reason)
                    + " at offset " + QByteArray::number(qint64(stop.offset)));
        for (const RecordTally::Line &line : facts.records.lines())
            text += "    "
                    + QByteArray::fromStdString(recordName(facts.format, line.type))
                              .leftJustified(26)
                    + QByteArray::number(quint64(line.count)).rightJustified(8) + '\n';
        return text;
    }

    QByteArray recordsText(const FileResult &result)
    {
        std::array<quint64, kRecordOutcomes> sums{};
        QByteArray lines;
        for (const RecordTally::Line &line : sortedLines(result.records)) {
            sums[size_t(line.outcome)] += line.count;
            lines += "  " + QByteArray(word(line.outcome)).leftJustified(13)
                    + QByteArray::fromStdString(recordName(result.drawnFormat, line.type))
                              .leftJustified(26)
                    + QByteArray::number(quint64(line.count)).rightJustified(8)
                    + "  first at offset " + QByteArray::number(qint64(line.firstOffset))
                    + (*line.why != '\0' ? ": " : "") + line.why + '\n';
        }
        QByteArray head = isOfEmbeddedEmf(result) ? "  records of the EMF in it: " : "  records: ";
        for (size_t i = 0; i < sums.size(); ++i)
            head += QByteArray::number(sums[i]) + ' ' + word(static_cast<RecordOutcome>(i))
                    + (i + 1 < sums.size() ? ", " : "");
        const RecordTally::Stop &stop = result.records.stop();
        return head + "; ended by " + word(stop.reason) + ", record "
                + QByteArray::number(quint64(stop.record)) + " (offset "
                + QByteArray::number(qint64(stop.offset)) + ")\n" + lines;
    }

    QJsonArray boxJson(const HeaderBox &box)
    {
        return { box.left, box.top, box.right, box.bottom };
    }

    QJsonObject stopJson(const RecordTally::Stop &stop)
    {
        return { { QStringLiteral("reason"), QLatin1String(word(stop.reason)) },
                 { QStringLiteral("record"), qint64(stop.record) },
                 { QStringLiteral("offset"), qint64(stop.offset) } };
    }

    QJsonArray recordsJson(MetafileFormat format, const RecordTally &records, bool hasOutcomes)
    {
        QJsonArray list;
        for (const RecordTally::Line &line : records.lines()) {
            QJsonObject row{
                { QStringLiteral("name"), QString::fromStdString(recordName(format, line.type)) },
                { QStringLiteral("type"), qint64(line.type) },
                { QStringLiteral("count"), qint64(line.count) },
                { QStringLiteral("firstOffset"), qint64(line.firstOffset) },
            };
            if (hasOutcomes)
                row.insert(QStringLiteral("outcome"), QLatin1String(word(line.outcome)));
            if (*line.why != '\0')
                row.insert(QStringLiteral("reason"), QLatin1String(line.why));
            list.append(row);
        }
        return list;
    }

    void addFacts(const MetafileFacts &facts, QJsonObject &object)
    {
        object.insert(QStringLiteral("bytes"), qint64(facts.fileBytes));
        if (facts.format == MetafileFormat::Unknown)
            return;
        object.insert(QStringLiteral("headerBytes"), qint64(facts.headerBytes));
        object.insert(QStringLiteral("recordTypes"),
                      recordsJson(facts.format, facts.records, false));
        object.insert(QStringLiteral("recordsEnd"), stopJson(facts.records.stop()));
        if (facts.format == MetafileFormat::Wmf)
            return;
        object.insert(QStringLiteral("bounds"), boxJson(facts.bounds));
        if (facts.format == MetafileFormat::PlaceableWmf) {
            object.insert(QStringLiteral("unitsPerInch"), facts.unitsPerInch);
            return;
        }
        object.insert(QStringLiteral("headerRecords"), qint64(facts.headerRecords));
        object.insert(QStringLiteral("frame"), boxJson(facts.frame));
        object.insert(QStringLiteral("devicePixels"),
                      QJsonArray{ facts.devicePixels[0], facts.devicePixels[1] });
        object.insert(QStringLiteral("deviceMillimeters"),
                      QJsonArray{ facts.deviceMillimeters[0], facts.deviceMillimeters[1] });
    }

    QByteArray reportJson(const FileResult &result, const Options &options)
    {
        QJsonObject object{
            { QStringLiteral("file"), result.input },
            { QStringLiteral("result"), QLatin1String(word(result.status)) },
            { QStringLiteral("format"), QLatin1String(word(result.facts.format)) },
        };
        if (!result.output.isEmpty())
            object.insert(QStringLiteral("output"), result.output);
        if (!result.message.isEmpty())
            object.insert(QStringLiteral("message"), result.message);
        if (options.report == Options::Report::Facts)
            addFacts(result.facts, object);
        if (result.width > 0) {
            object.insert(QStringLiteral("width"), rounded(result.width));
            object.insert(QStringLiteral("height"), rounded(result.height));
            if (!result.sizeGuess.isEmpty())
                object.insert(QStringLiteral("sizeGuess"), result.sizeGuess);
        }
        if (hasRecords(result)) {
            object.insert(QStringLiteral("skipped"), qint64(result.skipped));
            if (isOfEmbeddedEmf(result))
                object.insert(QStringLiteral("isOfEmbeddedEmf"), true);
            object.insert(QStringLiteral("records"),
                          recordsJson(result.drawnFormat, result.records, true));
            object.insert(QStringLiteral("end"), stopJson(result.records.stop()));
        }
        return QJsonDocument(object).toJson(QJsonDocument::Compact);
    }

} // namespace

QByteArray reportText(const FileResult &result, const Options &options)
{
    if (options.isJson)
        return reportJson(result, options);
    QByteArray text = printable(result.input).toUtf8() + ": " + word(result.status) + '\n';
    if (options.report == Options::Report::Facts)
        text += factsText(result);
    if (hasRecords(result))
        text += recordsText(result);
    return text;
}

QString summaryText(const std::vector<FileResult> &results)
{
    std::array<size_t, kFileStatuses> counts{};
    quint64 skipped = 0;
    size_t filesWithSkipped = 0;
    for (const FileResult &result : results) {
        ++counts[size_t(result.status)];
        skipped += result.skipped;
        filesWithSkipped += result.skipped > 0 ? 1 : 0;
    }
    QStringList parts;
    for (const FileStatus status :
         { FileStatus::Converted, FileStatus::Damaged, FileStatus::UpToDate, FileStatus::Failed,
           FileStatus::NotTried }) {
        if (counts[size_t(status)] > 0)
            parts += QString::number(counts[size_t(status)]) + QLatin1Char(' ')
                    + QLatin1String(word(status));
    }
    QString text = QStringLiteral("%1 %2: ")
                           .arg(results.size())
                           .arg(QLatin1String(results.size() == 1 ? "file" : "files"))
            + parts.join(QLatin1String(", "));
    if (skipped > 0)
        text += QStringLiteral("; %1 records skipped in %2 of them")
                        .arg(skipped)
                        .arg(filesWithSkipped);
    return text;
}

ExitStatus exitStatus(const std::vector<FileResult> &results)
{
    ExitStatus status = results.empty() ? ExitStatus::Failed : ExitStatus::Converted;
    for (const FileResult &result : results) {
        if (result.status == FileStatus::Failed || result.status == FileStatus::NotTried)
            return ExitStatus::Failed;
        if (result.status == FileStatus::Damaged)
            status = ExitStatus::Damaged;
    }
    return status;
}

} // namespace svgtool
