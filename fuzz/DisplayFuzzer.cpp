// The document for display: of what a metafile's conversion gives, and of any text.

#include "exact/svg/SVGDisplay.h"
#include "fuzz/Harness.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>

namespace {

using svgtool::fuzz::require;

// A document as a reader of XML sees it.
struct Document
{
    QStringList elements;
    QString text;
};

// Requires a well-formed document of SVG alone, whose ids are unique.
Document read(const QByteArray &svg)
{
    Document document;
    QSet<QString> ids;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            document.elements += reader.name().toString();
            require(reader.namespaceUri() == QLatin1String("http://www.w3.org/2000/svg"));
            const QXmlStreamAttributes attributes = reader.attributes();
            const QString id = attributes.value(QLatin1String("id")).toString();
            require(!attributes.hasAttribute(QLatin1String("id")) || !ids.contains(id));
            ids.insert(id);
        } else if (reader.isCharacters()) {
            document.text += reader.text();
        } else if (reader.isComment()) {
            document.elements += QStringLiteral("a comment");
        }
    }
    require(!reader.hasError());
    return document;
}

// The document for display has the elements and the text of an exact text, which has no "<" or ">"
// inside tags, and is its own document for display.
void requireNothingLost(const QByteArray &exact)
{
    static const QRegularExpression startTag(QStringLiteral("<([a-zA-Z]+)"));
    static const QRegularExpression lineEnd(QStringLiteral("\r\n?"));
    static const QRegularExpression tag(QStringLiteral("<[^>]*>"));
    const QByteArray svg = svgtool::displayableSvg(exact);
    const Document shown = read(svg);
    QString text = QString::fromUtf8(exact);
    QStringList elements;
    for (auto it = startTag.globalMatch(text); it.hasNext();)
        elements += it.next().captured(1);
    text.replace(lineEnd, QStringLiteral("\n")).remove(tag);
    text.replace(QLatin1String("&lt;"), QLatin1String("<"))
            .replace(QLatin1String("&gt;"), QLatin1String(">"))
            .replace(QLatin1String("&amp;"), QLatin1String("&"));
    require(shown.elements == elements);
    require(shown.text.trimmed() == text.trimmed());
    require(svgtool::displayableSvg(svg) == svg);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = svgtool::fuzz::bytesOf(data, size);
    const QByteArray exact = svgtool::fuzz::convertAndCheck(bytes);
    if (!exact.isEmpty())
        requireNothingLost(exact);
    svgtool::DisplayOptions options;
    options.comment = bytes.right(size % 16);
    options.width = size % 5 == 0 ? double(size) : 0;
    options.scale = size % 3 == 0 ? 0.5 : 1;
    read(displayableSvg(exact.isEmpty() ? bytes : exact, options));
    return 0;
}
