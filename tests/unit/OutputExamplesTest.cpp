// The examples of docs/output.md, which says how they are written.

#include "unit/Cases.h"

#include <QFile>
#include <QStringList>

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(OutputExamples, AreExact)
{
    QFile file(QStringLiteral(SVGTOOL_DOCS_DIR "/output.md"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    QString records;
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
            records = block.join(QLatin1Char('\n'));
            continue;
        }
        block += QString();
        const QString expected = block.join(QLatin1Char('\n'))
                                         .replace(QStringLiteral("␣"), QStringLiteral(" "))
                                         .replace(QStringLiteral("⇥"), QStringLiteral("\t"));
        const Conversion conversion = convert(isEmf ? emf(records).build() : wmf(records).build());
        EXPECT_EQ(conversion.result, isEmf ? 1 : 2);
        const bool isWhole = expected.startsWith(QLatin1String("<?xml"));
        EXPECT_EQ(isWhole ? conversion.text : conversion.body(), expected.toStdString());
        ++examples;
    }
    EXPECT_GE(examples, 20);
}

} // namespace
