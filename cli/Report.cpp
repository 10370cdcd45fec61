#include "cli/Report.h"

#include "cli/Files.h"
#include "picture/api/ReportJson.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace svgtool {

using Json = nlohmann::ordered_json;

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

    const char *word(StopReason reason)
    {
        static constexpr const char *kWords[] = { "nothing read",   "end record",  "record count",
                                                  "header length",  "end of data", "record cut off",
                                                  "bad record size" };
        return kWords[size_t(reason)];
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
        constexpr RecordFate kFates[] = { RecordFate::Drawn, RecordFate::Approximated,
                                          RecordFate::NotDone, RecordFate::Neutral };
        std::array<quint64, std::size(kFates)> sums{};
        QByteArray lines;
        const PictureReport &report = result.report;
        for (const RecordLine &line : worstFirst(report.records)) {
            sums[size_t(line.fate)] += line.count;
            lines += "  " + QByteArray(wordOf(line.fate)).leftJustified(13)
                    + QByteArray::fromStdString(line.name).leftJustified(26)
                    + QByteArray::number(quint64(line.count)).rightJustified(8)
                    + "  first at offset " + QByteArray::number(qint64(line.firstOffset))
                    + (line.reason.empty() ? "" : ": ") + QByteArray::fromStdString(line.reason)
                    + '\n';
        }
        QByteArray head = report.isOfEmbeddedEmf ? "  records of the EMF in it: " : "  records: ";
        for (const RecordFate fate : kFates)
            head += QByteArray::number(sums[size_t(fate)]) + ' ' + wordOf(fate)
                    + (fate == RecordFate::Neutral ? "" : ", ");
        return head + "; ended by " + word(result.ending) + ", record "
                + QByteArray::number(quint64(report.endRecord)) + " (offset "
                + QByteArray::number(qint64(report.endOffset)) + ")\n" + lines;
    }

    Json jsonOf(const HeaderBox &box)
    {
        return { box.left, box.top, box.right, box.bottom };
    }

    // What stands in the header, and where the chain of records ends.
    Json jsonOf(const MetafileFacts &facts)
    {
        Json json{ { "bytes", facts.fileBytes } };
        if (facts.format == MetafileFormat::Unknown)
            return json;
        json["headerBytes"] = facts.headerBytes;
        if (facts.format != MetafileFormat::Wmf)
            json["bounds"] = jsonOf(facts.bounds);
        if (facts.format == MetafileFormat::PlaceableWmf)
            json["unitsPerInch"] = facts.unitsPerInch;
        if (facts.format == MetafileFormat::Emf) {
            json["headerRecords"] = facts.headerRecords;
            json["frame"] = jsonOf(facts.frame);
            json["devicePixels"] = facts.devicePixels;
            json["deviceMillimeters"] = facts.deviceMillimeters;
        }
        Json types = Json::array();
        for (const RecordTally::Line &line : facts.records.lines())
            types.push_back({ { "name", recordName(facts.format, line.type) },
                              { "type", line.type },
                              { "count", line.count },
                              { "firstOffset", line.firstOffset } });
        json["recordTypes"] = std::move(types);
        const RecordTally::Stop &stop = facts.records.stop();
        json["recordsEnd"] = { { "reason", word(stop.reason) },
                               { "record", stop.record },
                               { "offset", stop.offset } };
        return json;
    }

    // Nothing where no document was made that there is something to say of.
    std::optional<PictureVerdict> verdictOf(const FileResult &result)
    {
        Picture picture;
        picture.report = result.report;
        switch (result.status) {
        case FileStatus::Converted:
            return svgtool::verdictOf(picture);
        case FileStatus::Damaged:
            return PictureVerdict::Damaged;
        case FileStatus::Failed:
            return PictureVerdict::Refused;
        case FileStatus::UpToDate:
        case FileStatus::NotTried:
            break;
        }
        return std::nullopt;
    }

    std::string reportJson(const FileResult &result, const Options &options)
    {
        Json json{ { "file", result.input.toStdString() }, { "result", word(result.status) } };
        if (const auto verdict = verdictOf(result))
            json["verdict"] = describe(*verdict);
        json["format"] = word(result.facts.format);
        if (!result.output.isEmpty())
            json["output"] = result.output.toStdString();
        if (!result.message.isEmpty())
            json["message"] = result.message.toStdString();
        if (options.report == Options::Report::Facts)
            json.update(jsonOf(result.facts));
        if (result.width > 0) {
            json["width"] = rounded(result.width);
            json["height"] = rounded(result.height);
            if (!result.sizeGuess.isEmpty())
                json["sizeGuess"] = result.sizeGuess.toStdString();
        }
        if (isWritten(result.status)) {
            json.update(jsonOf(result.report));
            json["end"]["reason"] = word(result.ending);
        }
        return textOf(json);
    }

} // namespace

std::vector<RecordLine> worstFirst(std::vector<RecordLine> lines)
{
    std::stable_sort(lines.begin(), lines.end(), [](const RecordLine &a, const RecordLine &b) {
        static constexpr int kRanks[] = { 2, 1, 0, 3 };
        return kRanks[size_t(a.fate)] < kRanks[size_t(b.fate)];
    });
    return lines;
}

const char *verdictWord(const FileResult &result)
{
    const auto verdict = verdictOf(result);
    return verdict ? describe(*verdict) : word(result.status);
}

QByteArray reportText(const FileResult &result, const Options &options)
{
    if (options.isJson)
        return QByteArray::fromStdString(reportJson(result, options));
    QByteArray text = printable(result.input).toUtf8() + ": " + word(result.status);
    const auto verdict = verdictOf(result);
    if (verdict == PictureVerdict::Approximated || verdict == PictureVerdict::Lost)
        text += QByteArray(", ") + describe(*verdict);
    text += '\n';
    if (options.report == Options::Report::Facts)
        text += factsText(result);
    if (isWritten(result.status))
        text += recordsText(result);
    return text;
}

QString lossText(const FileResult &result)
{
    const RecordTotals &totals = result.report.totals;
    if (totals.drawingLost == 0)
        return {};
    constexpr int kMostNames = 3;
    QStringList names;
    int others = 0;
    for (const RecordLine &line : result.report.records) {
        if (line.fate != RecordFate::NotDone || line.loss != RecordLoss::Drawing)
            continue;
        if (names.size() < kMostNames)
            names += QString::fromStdString(line.name)
                    + (line.count > 1 ? QStringLiteral(" (%1)").arg(line.count) : QString());
        else
            ++others;
    }
    if (others > 0)
        names += QStringLiteral("%1 more").arg(others);
    return QStringLiteral("%1: %2 of %3 drawing records not drawn: ")
                   .arg(result.input)
                   .arg(totals.drawingLost)
                   .arg(totals.drawing)
            + names.join(QLatin1String(", "));
}

QString summaryText(const std::vector<FileResult> &results)
{
    std::array<size_t, kFileStatuses> counts{};
    quint64 lost = 0;
    size_t filesWithLoss = 0;
    for (const FileResult &result : results) {
        ++counts[size_t(result.status)];
        lost += result.report.totals.drawingLost;
        filesWithLoss += result.report.totals.drawingLost > 0 ? 1 : 0;
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
    if (lost > 0)
        text += QStringLiteral("; %1 drawing %2 not drawn in %3 of them")
                        .arg(lost)
                        .arg(QLatin1String(lost == 1 ? "record" : "records"))
                        .arg(filesWithLoss);
    return text;
}

ExitStatus exitStatus(const std::vector<FileResult> &results, const Options &options)
{
    ExitStatus status = results.empty() ? ExitStatus::Failed : ExitStatus::Converted;
    for (const FileResult &result : results) {
        const bool isDamaged = result.status == FileStatus::Damaged;
        if (result.status == FileStatus::Failed || result.status == FileStatus::NotTried)
            return ExitStatus::Failed;
        if (options.isStrict && (isDamaged || !result.loss.isEmpty()))
            status = ExitStatus::Lost;
        else if (isDamaged)
            status = ExitStatus::Damaged;
    }
    return status;
}

} // namespace svgtool
