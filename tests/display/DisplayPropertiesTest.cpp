// What holds for every document: it is well-formed, and nothing of the exact text is lost.

#include "exact/svg/SVGDisplay.h"
#include "fuzz/RecordMutator.h"
#include "support/Conversion.h"
#include "support/Corpus.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <cstring>
#include <set>

// In place of libFuzzer's: puts some letters somewhere, with those among them that XML escapes or
// forbids.
extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);
extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize)
{
    static std::minstd_rand random;
    static constexpr char16_t kUnits[] = u"aB3 -&<>\"';#\t\r\n\x01\x7F\xE9\u20AC\uFFFE\xD83D\xDE00";
    size_t at = random() % (size / 2 + 1) * 2;
    for (size_t count = 1 + random() % 8; count > 0 && at + 2 <= maxSize; --count, at += 2)
        std::memcpy(data + at, &kUnits[random() % (std::size(kUnits) - 1)], 2);
    return std::max(size, at);
}

namespace svgtool::test {
namespace {

    // A document as a reader of XML sees it.
    struct Document
    {
        QString problem; // empty when it is well-formed and its ids are unique
        QStringList elements;
        QString text;
    };

    Document read(const QByteArray &svg)
    {
        Document document;
        std::set<QString> ids;
        QXmlStreamReader reader(svg);
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement()) {
                document.elements += reader.name().toString();
                if (reader.namespaceUri() != QLatin1String("http://www.w3.org/2000/svg"))
                    document.problem = QStringLiteral("element of another namespace");
                const QXmlStreamAttributes attributes = reader.attributes();
                if (attributes.hasAttribute(QLatin1String("id"))
                    && !ids.insert(attributes.value(QLatin1String("id")).toString()).second)
                    document.problem = QStringLiteral("repeated id");
            } else if (reader.isCharacters()) {
                document.text += reader.text();
            } else if (reader.isComment()) {
                document.elements += QStringLiteral("a comment");
            }
        }
        if (reader.hasError())
            document.problem = reader.errorString();
        return document;
    }

    // The document for display has the elements and the text of an exact text, which has no "<" or
    // ">" inside tags.
    void expectNothingLost(const QByteArray &exact)
    {
        static const QRegularExpression startTag(QStringLiteral("<([a-zA-Z]+)"));
        const QByteArray svg = displayableSvg(exact);
        const Document shown = read(svg);
        QString text = QString::fromUtf8(exact);
        QStringList elements;
        for (auto it = startTag.globalMatch(text); it.hasNext();)
            elements += it.next().captured(1);
        text.replace(QRegularExpression(QStringLiteral("\r\n?")), QStringLiteral("\n"))
                .remove(QRegularExpression(QStringLiteral("<[^>]*>")));
        for (const auto &[written, meant] :
             { std::pair("&lt;", "<"), { "&gt;", ">" }, { "&amp;", "&" } })
            text.replace(QLatin1String(written), QLatin1String(meant));
        EXPECT_EQ(shown.problem, QString());
        EXPECT_EQ(shown.elements, elements);
        EXPECT_EQ(shown.text.trimmed(), text.trimmed());
        EXPECT_EQ(displayableSvg(svg), svg);
    }

    // The exact text with a few bytes lost or changed, and perhaps without its end.
    QByteArray damaged(QByteArray text, fuzz::Random &random)
    {
        static constexpr char kBytes[] = "<>\"'=/&-!?[]#; \n\0\xC3\xFFgid";
        for (size_t count = random() % 6; count > 0; --count)
            text.replace(int(random() % size_t(text.size())), int(random() % 3),
                         QByteArray(1, kBytes[random() % (sizeof kBytes - 1)]));
        return text.left(int(random() % size_t(2 * text.size())));
    }

    // The records of all first inputs of a fuzz target, without the end records.
    std::string allRecords(const fuzz::Format &format, const char *target, size_t endSize)
    {
        const QDir folder(QStringLiteral(SVGTOOL_FUZZ_DIR "/") + QLatin1String(target));
        std::string all;
        for (const QString &name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            const std::string bytes = file.readAll().toStdString();
            const size_t start = all.empty() ? 0 : format.headerSize(bytes);
            all += bytes.substr(start, bytes.size() - endSize - start);
        }
        return all;
    }

    TEST(DisplayProperties, RandomMetafiles)
    {
        const SilentLogs silence;
        fuzz::Random random;
        const std::string emf = allRecords(fuzz::emfFormat(), "emf", 20);
        const std::string wmf = allRecords(fuzz::wmfFormat(), "wmf", 6);
        int count = 0;
        for (int i = 0; i < 2000 && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            const bool isWmf = i % 4 == 0;
            std::string bytes = isWmf ? wmf : emf;
            for (size_t times = 1 + random() % 100; times > 0; --times)
                bytes = fuzz::changed(isWmf ? fuzz::wmfFormat() : fuzz::emfFormat(), bytes, 64,
                                      random);
            const Conversion conversion = convert(QByteArray::fromStdString(bytes));
            if (conversion.result <= 0)
                continue;
            const QByteArray exact = QByteArray::fromStdString(conversion.text);
            expectNothingLost(exact);
            const QByteArray broken = damaged(exact, random);
            EXPECT_EQ(read(displayableSvg(broken)).problem, QString()) << broken.toStdString();
            ++count;
        }
        EXPECT_GE(count, 1900);
    }

    TEST(DisplayProperties, RealMetafiles)
    {
        const SilentLogs silence;
        const auto files = metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR });
        EXPECT_GE(files.size(), 2U);
        for (const auto &[path, bytes] : files) {
            SCOPED_TRACE(path.toStdString());
            if (const Conversion conversion = convert(bytes); conversion.result > 0)
                expectNothingLost(QByteArray::fromStdString(conversion.text));
        }
    }

} // namespace
} // namespace svgtool::test
