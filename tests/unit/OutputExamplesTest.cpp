// The examples of docs/output.md, which says how they are written.

#include "support/Conversion.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>

namespace svgtool::test {
namespace {

    // Appends one word of a record line.
    void append(ByteWriter &body, const QString &word, bool isEmf)
    {
        bool isNumber = true;
        if (word.startsWith(QLatin1Char('"'))) {
            for (const QChar unit : word.mid(1, word.size() - 2))
                isEmf ? body.u16(unit.unicode()) : body.bytes(QByteArray(1, unit.toLatin1()));
        } else if (word.contains(QLatin1Char('.'))) {
            body.f32(word.toFloat(&isNumber));
        } else {
            const QStringList numbers = word.split(QLatin1Char(','));
            for (const QString &number : numbers) {
                const qint64 value = number.toLongLong(&isNumber, 0);
                ASSERT_TRUE(isNumber) << word.toStdString();
                isEmf &&numbers.size() == 1 ? body.u32(value) : body.u16(int(value));
            }
        }
        ASSERT_TRUE(isNumber) << word.toStdString();
    }

    // Converts the records of an example, one a line.
    Conversion convertExample(const QStringList &records, bool isEmf)
    {
        EmfBuilder emf;
        WmfBuilder wmf;
        wmf.placeable(0, 0, 100, 50, 96).record(0x020B, { 0, 0 });
        for (const QString &record : records) {
            QStringList words =
                    record.section(QLatin1Char('#'), 0, 0).simplified().split(QLatin1Char(' '));
            const int type = words.takeFirst().toInt(nullptr, 0);
            ByteWriter body;
            for (const QString &word : words)
                append(body, word, isEmf);
            emf.record(quint32(type), body.result());
            wmf.record(type, body.result());
        }
        return convert(isEmf ? emf.build() : wmf.build());
    }

    TEST(OutputExamples, AreExact)
    {
        QFile file(QStringLiteral(SVGTOOL_DOCS_DIR "/output.md"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        QStringList records;
        bool isEmf = false;
        int examples = 0;
        for (int i = 0; i < lines.size(); ++i) {
            const QString fence = lines[i];
            if (!fence.startsWith(QLatin1String("```")))
                continue;
            SCOPED_TRACE("output.md:" + std::to_string(i + 1));
            QStringList block;
            while (++i < lines.size() && lines[i] != QLatin1String("```"))
                block += lines[i];
            if (fence != QLatin1String("```svg")) {
                ASSERT_TRUE(fence == QLatin1String("```emf") || fence == QLatin1String("```wmf"));
                isEmf = fence == QLatin1String("```emf");
                records = block;
                continue;
            }
            block += QString();
            const QString expected = block.join(QLatin1Char('\n'))
                                             .replace(QStringLiteral("␣"), QStringLiteral(" "))
                                             .replace(QStringLiteral("⇥"), QStringLiteral("\t"));
            const Conversion conversion = convertExample(records, isEmf);
            EXPECT_EQ(conversion.result, isEmf ? 1 : 2);
            const bool isWhole = expected.startsWith(QLatin1String("<?xml"));
            EXPECT_EQ(isWhole ? conversion.text : conversion.body(), expected.toStdString());
            ++examples;
        }
        EXPECT_GE(examples, 20);
    }

} // namespace
} // namespace svgtool::test
