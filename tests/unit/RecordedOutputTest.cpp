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
        if (unit == QLatin1Char('?'))
            records += QString::number(static_cast<qint32>(state) >> (state >> 8) % 31);
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
    const WmfBuilder placeable = WmfBuilder().placeable(0, 0, 3000, 2000, 96);
    const std::pair<QByteArray, const char *> cases[] = {
        { emf(emfRecords).build(),
          "a66aa9877ff8c87f0ebbac2a43fec0c6246287b394e25bd4c51353b8eb286f3f" },
        { emf("mapMode 8; windowExt 300 200; windowOrg 5 7;" + emfRecords).build(),
          "f64f2f3dbdbcca0707e15e459d2f201bf7d1db154965a0e633e4dcd5734094d4" },
        { emf("mapMode 8; viewportOrg 9 8; windowExt 300 200; viewportExt 1000 900;" + emfRecords)
                  .build(),
          "a61825281b351fee6f58bfe2390ed2edbf70e5f8d573c4af312923f7dbe9cec2" },
        { wmf(wmfRecords, WmfBuilder()).build(),
          "218f5186ab64ebe5fcc5d881fbaecadb6c1378bd842e23c86007787552f4126e" },
        { wmf("windowOrg 7 5; windowExt 900 1200;" + wmfRecords, placeable).build(),
          "40f0b02648f6873cf030fd422f6059a1c529e90ad6669b3d8f7b401c76aaa9a3" },
    };
    for (const auto &[metafile, hash] : cases) {
        const QByteArray text = QByteArray::fromStdString(convert(metafile).text);
        const QByteArray sum = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
        EXPECT_EQ(sum.toHex().toStdString(), hash) << text.size() << " bytes";
    }
}

} // namespace
