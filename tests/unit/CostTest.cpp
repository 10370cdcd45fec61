#include "support/TestData.h"
#include "unit/Cases.h"

#include <QRegularExpression>

#include <pthread.h>

#include <map>

// How large a document may get, and how much stack it takes: tests/golden/costs.txt has the worst
// record of each family.

namespace svgtool::test {
namespace {

    struct Family
    {
        bool isEmf;
        QString start, record;
        int bytesPerByte; ///< of the document for each of the record, rounded up
        bool countsUp; ///< each record writes a number that grows

        QByteArray file(int count) const
        {
            const QString records = start + (QLatin1Char(';') + record).repeated(count);
            if (isEmf)
                return emf(records, EmfBuilder{ .recordCount = 0xFFFFFFFF }).build();
            const WmfBuilder most{ .maxRecord = 0x7FFFFFFF };
            return wmf(records, WmfBuilder(most).placeable(0, 0, 32767, 32767, 96)).build();
        }
        qint64 documentSize(int count) const { return qint64(convert(file(count)).text.size()); }
    };

    QString expanded(QString line)
    {
        static const QRegularExpression kRepeated(QStringLiteral("\\((\\w+)\\*(\\d+)\\)"));
        for (auto all = kRepeated.globalMatch(line); all.hasNext();) {
            const auto match = all.next();
            line.replace(match.captured(), match.captured(1).repeated(match.captured(2).toInt()));
        }
        return line;
    }

    void expectLinearGrowth(const Family &family)
    {
        const qint64 one = family.documentSize(1);
        const qint64 four = family.documentSize(4);
        const qint64 sixteen = family.documentSize(16);
        const qint64 each = (four - one) / 3;
        const qint64 size = family.file(1).size() - family.file(0).size();
        EXPECT_EQ((each + size - 1) / size, family.bytesPerByte) << each << " bytes for " << size;
        // A longer number takes one more byte wherever it stands.
        EXPECT_GE(sixteen - four, 12 * each);
        EXPECT_LE(sixteen - four, 12 * each + (family.countsUp ? 16 * 2 : 0));
    }

    void expectLittleStack(const QByteArray &file)
    {
        std::pair<const QByteArray &, qint32> work(file, 0);
        const auto start = [](void *argument) -> void * {
            auto &[bytes, result] = *static_cast<decltype(work) *>(argument);
            result = convert(bytes).result;
            return nullptr;
        };
        // Threads of Qt would hide from the thread sanitizer that one waits for the other.
        pthread_attr_t attributes;
        pthread_t thread;
        ASSERT_EQ(pthread_attr_init(&attributes), 0);
        ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
        ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
        ASSERT_EQ(pthread_join(thread, nullptr), 0);
        EXPECT_GT(work.second, 0);
    }

    TEST(Cost, GrowsWithTheRecordsOnLittleStack)
    {
        const QRegularExpression startLine(QStringLiteral("^(\\w+) = (.*)$"));
        const QRegularExpression costLine(QStringLiteral("^(\\d+)(\\+?) (\\w+) (.*)$"));
        std::map<QString, QString> starts;
        int families = 0;
        for (const QString &text : testData("costs.txt").split(QLatin1Char('\n'))) {
            const QString line = expanded(text);
            if (const auto start = startLine.match(line); start.hasMatch())
                starts[start.captured(1)] = start.captured(2);
            const auto cost = costLine.match(line);
            if (!cost.hasMatch())
                continue;
            SCOPED_TRACE(text.toStdString());
            const QString key = cost.captured(3);
            const Family family{ key.startsWith(QLatin1String("emf")), starts[key],
                                 cost.captured(4), cost.captured(1).toInt(),
                                 !cost.captured(2).isEmpty() };
            expectLinearGrowth(family);
            expectLittleStack(family.file(16));
            ++families;
        }
        EXPECT_EQ(families, 29);
    }

} // namespace
} // namespace svgtool::test
