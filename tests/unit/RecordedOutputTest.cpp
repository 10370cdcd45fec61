#include "core/base/Numeric.h"
#include "support/LogLines.h"
#include "support/TestData.h"
#include "unit/Cases.h"

#include <QCryptographicHash>

// Whole documents in which every kind of element stands many times, with numbers of every length.
// Their hashes were recorded when each element's text had been checked by itself; a change that
// makes the conversion faster leaves them alone.

using namespace svgtool;
using namespace svgtool::test;

namespace {

// The records of a file of tests/golden/ many times over, with the numbers that it asks for: the
// same ones in every run.
QString recordsOf(const char *name)
{
    QString records;
    quint32 state = 1;
    for (const QChar unit : testData(name).repeated(20)) {
        state = state * 1664525U + 1013904223U;
        const qint32 number = static_cast<qint32>(state) >> (state >> 8) % 31;
        if (unit == QLatin1Char('?'))
            records += QString::number(number);
        else if (unit == QLatin1Char('~'))
            records += QString::number(wrapToInt16(number));
        else if (unit == QLatin1Char('%'))
            records += QString::number((state >> 8) % 10);
        else
            records += unit;
    }
    return records;
}

TEST(RecordedOutput, IsUnchanged)
{
    const QString emfRecords = recordsOf("every-emf.txt");
    const QString wmfRecords = recordsOf("every-wmf.txt");
    const std::pair<QByteArray, const char *> cases[] = {
        { emf(emfRecords).build(),
          "af2ab1a87de2b211e38cf7ceacc5e29a5d880dc2063e5c6b866b7ba3a9897455" },
        { emf("mapMode 8; viewportOrg 9 8; windowExt 300 200; viewportExt 1000 900;" + emfRecords)
                  .build(),
          "b66eaa84124fec19e11f91251aa9dbb1a3c97c624806b94c60518761a67744ff" },
        { wmf("file placeable=0,0,3000,2000,96; windowOrg 7 5; windowExt 900 1200;" + wmfRecords)
                  .build(),
          "40f0b02648f6873cf030fd422f6059a1c529e90ad6669b3d8f7b401c76aaa9a3" },
    };
    for (const auto &[metafile, hash] : cases) {
        const QByteArray text = QByteArray::fromStdString(convert(metafile).text);
        const QByteArray sum = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
        EXPECT_EQ(sum.toHex().toStdString(), hash) << text.size() << " bytes";
        // Traced, coordinates go through calls of their own.
        linesOf(basic_logging::tracelevel, "TRACE",
                [&file = metafile, &text] { EXPECT_EQ(convert(file).text, text.toStdString()); });
    }
}

} // namespace
