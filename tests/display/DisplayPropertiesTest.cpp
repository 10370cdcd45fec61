// What holds for every document: it is well-formed, and nothing of the exact text is lost.

#include "fuzz/RecordMutator.h"
#include "support/Conversion.h"
#include "support/Corpus.h"
#include "svg/SVGDisplay.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <cstring>
#include <map>

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
        QStringList wrongReferences; // to another id than the latest
        QStringList elements;
        QString text;
        int comments = 0;
        std::map<QString, QString> latestIds; // by the id in the exact text
        QStringList ids;
    };

    // The id that a repeated id had in the exact text: the writer's own have no hyphen.
    QString originalId(const QString &id)
    {
        return id.section(QLatin1Char('-'), 0, 0);
    }

    void readAttributes(Document &document, const QXmlStreamAttributes &attributes)
    {
        static const QRegularExpression reference(QStringLiteral("^#(.+)$|url\\(#([^)]+)\\)"));
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QString value = attribute.value().toString();
            if (attribute.name() == QLatin1String("id")) {
                if (document.ids.contains(value))
                    document.problem = QLatin1String("repeated id ") + value;
                document.ids += value;
                document.latestIds[originalId(value)] = value;
                continue;
            }
            const bool isLink = attribute.name() == QLatin1String("href");
            const auto match = reference.match(value);
            if (!match.hasMatch() || (!isLink && value.startsWith(QLatin1Char('#'))))
                continue;
            const QString id = match.captured(match.lastCapturedIndex());
            const auto latest = document.latestIds.find(originalId(id));
            if (id != (latest == document.latestIds.end() ? originalId(id) : latest->second))
                document.wrongReferences += id;
        }
    }

    Document read(const QByteArray &svg)
    {
        Document document;
        QXmlStreamReader reader(svg);
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement()) {
                document.elements += reader.name().toString();
                if (reader.namespaceUri() != QLatin1String("http://www.w3.org/2000/svg"))
                    document.problem = QStringLiteral("element of another namespace");
                readAttributes(document, reader.attributes());
            } else if (reader.isCharacters()) {
                document.text += reader.text();
            } else if (reader.isComment()) {
                ++document.comments;
            }
        }
        if (reader.hasError())
            document.problem = reader.errorString();
        return document;
    }

    // The elements and the text of an exact text, which has no "<" or ">" inside tags.
    void expectNothingLost(const Document &shown, const QByteArray &exact)
    {
        static const QRegularExpression tag(QStringLiteral("<[^>]*>"));
        static const QRegularExpression startTag(QStringLiteral("<([a-zA-Z]+)"));
        QString text = QString::fromUtf8(exact);
        QStringList elements;
        for (auto it = startTag.globalMatch(text); it.hasNext();)
            elements += it.next().captured(1);
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"))
                .replace(QLatin1Char('\r'), QLatin1Char('\n'));
        text.remove(tag);
        for (const auto &[written, meant] :
             { std::pair("&lt;", "<"), { "&gt;", ">" }, { "&amp;", "&" } })
            text.replace(QLatin1String(written), QLatin1String(meant));
        EXPECT_EQ(shown.problem, QString());
        EXPECT_EQ(shown.wrongReferences, QStringList());
        EXPECT_EQ(shown.elements, elements);
        EXPECT_EQ(shown.text.trimmed(), text.trimmed());
        EXPECT_EQ(shown.comments, 0);
    }

    // The exact text with a few bytes lost, changed or moved, or its end missing.
    QByteArray damaged(QByteArray text, std::mt19937 &random)
    {
        static constexpr char kBytes[] = "<>\"'=/&-!?[]#; \n\0\xC3\xFFgid";
        const auto below = [&](auto limit) { return int(random() % quint32(limit)); };
        const auto anyPlace = [&] { return below(text.size() + 1); };
        for (int count = below(6); count > 0; --count) {
            const int at = anyPlace();
            text.remove(at, below(3));
            text.insert(at,
                        below(2) == 0 ? QByteArray(1, kBytes[below(sizeof kBytes - 1)])
                                      : text.mid(anyPlace(), 8 * below(4)));
        }
        if (below(2) == 0)
            text.truncate(anyPlace());
        return text;
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
        std::mt19937 damage;
        const std::string emf = allRecords(fuzz::emfFormat(), "emf", 20);
        const std::string wmf = allRecords(fuzz::wmfFormat(), "wmf", 6);
        int count = 0;
        for (int i = 0; i < 2000 && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            const bool isWmf = i % 4 == 0;
            const fuzz::Format &format = isWmf ? fuzz::wmfFormat() : fuzz::emfFormat();
            std::string bytes = isWmf ? wmf : emf;
            for (size_t times = 1 + random() % 100; times > 0; --times)
                bytes = fuzz::changed(format, bytes, 64, random);
            const Conversion conversion = convert(QByteArray::fromStdString(bytes));
            if (conversion.result <= 0)
                continue;
            const QByteArray exact = QByteArray::fromStdString(conversion.text);
            const QByteArray svg = displayableSvg(exact);
            expectNothingLost(read(svg), exact);
            EXPECT_EQ(displayableSvg(svg), svg);
            const QByteArray broken = damaged(exact, damage);
            EXPECT_EQ(read(displayableSvg(broken)).problem, QString()) << broken.toStdString();
            ++count;
        }
        EXPECT_GE(count, 1900);
    }

    TEST(DisplayProperties, RealMetafiles)
    {
        const SilentLogs silence;
        int count = 0;
        for (const auto &[path, bytes] :
             metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR })) {
            SCOPED_TRACE(path.toStdString());
            const Conversion conversion = convert(bytes);
            if (conversion.result <= 0)
                continue;
            const QByteArray exact = QByteArray::fromStdString(conversion.text);
            expectNothingLost(read(displayableSvg(exact)), exact);
            ++count;
        }
        EXPECT_GE(count, 5);
    }

} // namespace
} // namespace svgtool::test
