#include "cli/Gallery.h"

#include "cli/Options.h"
#include "cli/Report.h"
#include "picture/api/ReportJson.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QXmlStreamReader>

#include <algorithm>

namespace svgtool {

namespace {

    // Browsers refuse data URLs of more than 32 MiB, and this becomes longer by a third.
    constexpr qint64 kLargestPicture = qint64(23) << 20;

    const std::string &pathWithFolder(const std::string &path)
    {
        makeFolders(path);
        return path;
    }

    // The text as it may stand in an element or between quotation marks.
    QByteArray escaped(const QString &text)
    {
        return printable(text).toHtmlEscaped().toUtf8();
    }

    // What a policy calls the only element of this name: the hash of the text in it.
    QByteArray hashOf(const QByteArray &page, const QByteArray &element)
    {
        const auto begin = page.indexOf('<' + element + '>') + element.size() + 2;
        const auto end = page.indexOf("</" + element + '>', begin);
        return QCryptographicHash::hash(page.mid(begin, end - begin), QCryptographicHash::Sha256)
                .toBase64();
    }

    QByteArray bytesText(qint64 bytes)
    {
        return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat).toUtf8();
    }

    // Width and height of a document as its root gives them, in pixels.
    struct Pixels
    {
        QString width, height;
        bool isEmpty() const { return !(width.toDouble() > 0 && height.toDouble() > 0); }
    };

    Pixels pixelsOf(const QByteArray &document)
    {
        constexpr qint64 kHead = 4096;
        QXmlStreamReader reader(document.left(int(std::min<qint64>(document.size(), kHead))));
        if (!reader.readNextStartElement())
            return {};
        const QXmlStreamAttributes root = reader.attributes();
        return { root.value(QLatin1String("width")).toString(),
                 root.value(QLatin1String("height")).toString() };
    }

    // The folder stands apart.
    QByteArray nameText(const QString &path)
    {
        const auto split = path.lastIndexOf(QLatin1Char('/')) + 1;
        const QByteArray folder = escaped(path.left(split));
        return "<bdi>" + (folder.isEmpty() ? folder : "<span>" + folder + "</span>")
                + escaped(path.mid(split)) + "</bdi>\n";
    }

    QByteArray pictureText(const FileResult &result, const Pixels &pixels)
    {
        const char *reason = result.document.isEmpty()     ? "no picture"
                : result.document.size() > kLargestPicture ? "too large to be shown here"
                : pixels.isEmpty()                         ? "empty picture"
                                                           : nullptr;
        if (reason != nullptr)
            return QByteArray("<p class=\"none\">") + reason + "</p>\n";
        return "<button type=\"button\"><img loading=\"lazy\" decoding=\"async\" alt=\""
                + escaped(result.input) + "\" src=\"data:image/svg+xml;base64,"
                + result.document.toBase64() + "\"></button>\n";
    }

    QByteArray sizesText(const FileResult &result, const Pixels &pixels)
    {
        QByteArray text;
        if (result.facts.fileBytes > 0)
            text = QByteArray("<p>")
                    + (result.facts.format == MetafileFormat::Unknown
                               ? QByteArray()
                               : QByteArray(word(result.facts.format)) + ' ')
                    + bytesText(result.facts.fileBytes)
                    + (result.document.isEmpty()
                               ? QByteArray()
                               : " &rarr; SVG " + bytesText(result.document.size()))
                    + "</p>\n";
        if (!result.document.isEmpty())
            text += "<p>" + escaped(pixels.width) + " &times; " + escaped(pixels.height)
                    + " pixels</p>\n";
        return text;
    }

    // What became of the records, for who opens it.
    QByteArray recordsText(const FileResult &result)
    {
        if (result.document.isEmpty())
            return {};
        const RecordTotals &totals = result.report.totals;
        QByteArray text = "<details><summary>Records: "
                + QByteArray::number(quint64(totals.drawing - totals.drawingLost)) + " of "
                + QByteArray::number(quint64(totals.drawing)) + " drawn</summary>\n<table>\n";
        for (const RecordLine &line : worstFirst(result.report.records))
            text += "<tr data-fate=\"" + QByteArray(wordOf(line.fate)) + "\"><td>"
                    + escaped(QString::fromStdString(line.name)) + "<td>"
                    + QByteArray::number(quint64(line.count)) + "<td>" + wordOf(line.fate)
                    + (line.reason.empty() ? QByteArray()
                                           : ": " + escaped(QString::fromStdString(line.reason)))
                    + '\n';
        return text + "</table>\n</details>\n";
    }

    QByteArray reasonText(const FileResult &result)
    {
        if (result.message.isEmpty())
            return {};
        const QString prefix = result.input + QLatin1String(": ");
        const bool isNamed = result.message.startsWith(prefix);
        return "<p class=\"reason\">" + escaped(result.message.mid(isNamed ? prefix.size() : 0))
                + "</p>\n";
    }

} // namespace

Gallery::Gallery(const std::string &path) : m_file(pathWithFolder(path))
{
    QByteArray page(kGalleryPage);
    const QByteArray style = hashOf(page, "style");
    const QByteArray script = hashOf(page, "script");
    page.replace("@STYLE@", style).replace("@SCRIPT@", script);
    page.replace("@VERSION@", kVersion);
    const QByteArray place = "@RESULTS@\n";
    const auto split = page.indexOf(place);
    m_end = page.mid(split + place.size());
    m_file.write(page.left(split));
}

void Gallery::add(const FileResult &result)
{
    const Pixels pixels = pixelsOf(result.document);
    const QByteArray status = verdictWord(result);
    const QByteArray mark = status == describe(PictureVerdict::Complete)
            ? QByteArray()
            : "<span class=\"status\">" + status + "</span>";
    m_file.write("<figure data-status=\"" + status + "\">\n" + pictureText(result, pixels)
                 + "<figcaption>" + mark + nameText(result.input) + sizesText(result, pixels)
                 + recordsText(result) + reasonText(result) + "</figcaption>\n</figure>\n");
}

void Gallery::finish()
{
    m_file.write(m_end);
    m_file.finish();
}

} // namespace svgtool
